#include "PasswordDialog.h"

#include <utility>

#include "Texts.h"
#include "WindowText.h"
#include "resource.h"

namespace workbench {

PasswordDialog::PasswordDialog(PasswordRequest request) : ModalDialog(IDD_PASSWORD), request_(std::move(request)) {}

void PasswordDialog::on_init() {
  const std::wstring question = text(IDS_PASSWORD_QUESTION, {request_.store});
  SetWindowTextW(control(IDC_PASSWORD_MESSAGE), (request_.refusal.empty() ? question : request_.refusal).c_str());
  CheckDlgButton(handle(), IDC_REMEMBER_PASSWORD, request_.remembered ? BST_CHECKED : BST_UNCHECKED);
}

void PasswordDialog::on_command(WORD id, WORD) {
  if (id != IDOK) return;
  entered_ = {base::window_text(control(IDC_PASSWORD)),
              IsDlgButtonChecked(handle(), IDC_REMEMBER_PASSWORD) == BST_CHECKED};
  SetWindowTextW(control(IDC_PASSWORD), L"");
  close(IDOK);
}

std::optional<EnteredPassword> ask_in_dialog(HWND owner, const PasswordRequest& request) {
  PasswordDialog dialog(request);
  if (dialog.run(owner) != IDOK) return std::nullopt;
  return dialog.entered();
}

}  // namespace workbench
