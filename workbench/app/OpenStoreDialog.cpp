#include "OpenStoreDialog.h"

#include <utility>

#include "StoreLocation.h"
#include "Texts.h"
#include "WindowText.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr int file_fields[] = {IDC_STORE_FILE, IDC_STORE_BROWSE};
constexpr int server_fields[] = {IDC_STORE_SERVER, IDC_STORE_PORT, IDC_STORE_DATABASE, IDC_STORE_USER};

}  // namespace

OpenStoreDialog::OpenStoreDialog(FileDialogs files, Open open)
    : ModalDialog(IDD_OPEN_STORE), files_(std::move(files)), open_(std::move(open)) {}

void OpenStoreDialog::on_init() {
  CheckRadioButton(handle(), IDC_STORE_IS_FILE, IDC_STORE_IS_SERVER, IDC_STORE_IS_FILE);
  enable_fields();
}

void OpenStoreDialog::on_command(WORD id, WORD) {
  switch (id) {
    case IDC_STORE_IS_FILE:
    case IDC_STORE_IS_SERVER:
      enable_fields();
      return;
    case IDC_STORE_BROWSE:
      browse();
      return;
    case IDOK:
      open();
      return;
    default:
      return;
  }
}

bool OpenStoreDialog::names_server() const { return IsDlgButtonChecked(handle(), IDC_STORE_IS_SERVER) == BST_CHECKED; }

void OpenStoreDialog::enable_fields() {
  for (const int id : file_fields) EnableWindow(control(id), !names_server());
  for (const int id : server_fields) EnableWindow(control(id), names_server());
}

void OpenStoreDialog::browse() {
  if (const auto path = files_.ask_to_open(handle(), {IDS_FILTER_STORE, L"db"}))
    SetWindowTextW(control(IDC_STORE_FILE), path->c_str());
}

std::wstring OpenStoreDialog::entered_name() const {
  if (!names_server()) return base::window_text(control(IDC_STORE_FILE));
  const ServerFields fields{.server = base::window_text(control(IDC_STORE_SERVER)),
                            .port = base::window_text(control(IDC_STORE_PORT)),
                            .database = base::window_text(control(IDC_STORE_DATABASE)),
                            .user = base::window_text(control(IDC_STORE_USER))};
  return fields.server.empty() || fields.database.empty() ? std::wstring() : server_name(fields);
}

void OpenStoreDialog::open() {
  const std::wstring name = entered_name();
  HWND first_field = control(names_server() ? IDC_STORE_SERVER : IDC_STORE_FILE);
  if (name.empty()) {
    show_mistake(text(IDS_NO_STORE_ENTERED), first_field);
  } else if (open_(name)) {
    close(IDOK);
  }
}

}  // namespace workbench
