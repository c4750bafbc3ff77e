#include "ReportDialog.h"

#include <windows.h>

#include "ModulePath.h"
#include "SnagtrapResource.h"
#include "Texts.h"

namespace snagtrap {

namespace {

INT_PTR fill(HWND dialog, const ReportText& text) {
  SetWindowTextW(dialog, text.caption.c_str());
  SetDlgItemTextW(dialog, IDC_HEADLINE, text.headline.c_str());
  SetDlgItemTextW(dialog, IDC_DETAILS, text.details.c_str());
  SendDlgItemMessageW(dialog, IDC_REPORT_ICON, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconW(nullptr, IDI_ERROR)), 0);
  EnableWindow(GetDlgItem(dialog, IDC_ALWAYS_IGNORE), text.has_location);
  SetForegroundWindow(dialog);
  SetFocus(GetDlgItem(dialog, IDCANCEL));
  return FALSE;  // the focus is set
}

void end(HWND dialog, UserAnswer answer) noexcept { EndDialog(dialog, static_cast<INT_PTR>(answer)); }

void end_ignoring(HWND dialog) noexcept {
  const bool always = IsDlgButtonChecked(dialog, IDC_ALWAYS_IGNORE) == BST_CHECKED;
  end(dialog, always ? UserAnswer::always_ignore : UserAnswer::ignore);
}

INT_PTR CALLBACK report_procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message == WM_INITDIALOG) return fill(dialog, *reinterpret_cast<const ReportText*>(lparam));
  if (message != WM_COMMAND) return FALSE;
  switch (LOWORD(wparam)) {
    case IDC_DEBUG:
      end(dialog, UserAnswer::debug);
      return TRUE;
    case IDC_ABORT:
      end(dialog, UserAnswer::abort);
      return TRUE;
    case IDCANCEL:  // the button Ignore, Esc and the window's close box
      end_ignoring(dialog);
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

bool can_show_windows() noexcept {
  USEROBJECTFLAGS flags = {};
  return GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &flags, sizeof flags, nullptr) &&
         (flags.dwFlags & WSF_VISIBLE) != 0;
}

UserAnswer ask_user(const ReportText& text) noexcept {
  const INT_PTR answer = DialogBoxParamW(base::module_instance(), MAKEINTRESOURCEW(IDD_REPORT), GetActiveWindow(),
                                         report_procedure, reinterpret_cast<LPARAM>(&text));
  return answer > 0 ? static_cast<UserAnswer>(answer) : UserAnswer::ignore;
}

}  // namespace snagtrap
