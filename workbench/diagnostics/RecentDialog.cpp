#include "RecentDialog.h"

#include <windows.h>
#include <shellapi.h>

#include "IgnoredLocations.h"
#include "ModulePath.h"
#include "SnagtrapResource.h"
#include "Texts.h"
#include "WindowText.h"

namespace snagtrap {

namespace {

struct Content {
  const std::wstring& log_path;
  const std::wstring& recent_lines;
};

void fill(HWND dialog, const Content& content) noexcept {
  SetDlgItemTextW(dialog, IDC_LOG_PATH, content.log_path.c_str());
  const HWND recent = GetDlgItem(dialog, IDC_RECENT);
  SendMessageW(recent, EM_SETLIMITTEXT, 0, 0);
  SetWindowTextW(recent, content.recent_lines.c_str());
  const auto end = static_cast<WPARAM>(content.recent_lines.size());
  SendMessageW(recent, EM_SETSEL, end, static_cast<LPARAM>(end));
  SendMessageW(recent, EM_SCROLLCARET, 0, 0);
}

void open_folder(HWND dialog) {
  std::wstring folder = base::window_text(GetDlgItem(dialog, IDC_LOG_PATH));
  folder.resize(folder.rfind(L'\\') + 1);
  ShellExecuteW(dialog, L"open", folder.c_str(), nullptr, nullptr, SW_SHOWNORMAL);
}

void run_command(HWND dialog, int command) {
  switch (command) {
    case IDC_OPEN_FOLDER:
      open_folder(dialog);
      break;
    case IDC_FORGET_IGNORED:
      forget_ignored_locations();
      EnableWindow(GetDlgItem(dialog, IDC_FORGET_IGNORED), FALSE);
      SetFocus(GetDlgItem(dialog, IDCANCEL));
      break;
    case IDCANCEL:
      EndDialog(dialog, 0);
      break;
    default:
      break;
  }
}

INT_PTR CALLBACK recent_procedure(HWND dialog, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  switch (message) {
    case WM_INITDIALOG:
      fill(dialog, *reinterpret_cast<const Content*>(lparam));
      return TRUE;
    case WM_COMMAND:
      try {
        run_command(dialog, LOWORD(wparam));
      } catch (...) {
        // Out of memory: the button does nothing this time.
      }
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace

void show_recent_reports(const std::wstring& log_path, const std::wstring& recent_lines) noexcept {
  const Content content{log_path, recent_lines};
  DialogBoxParamW(base::module_instance(), MAKEINTRESOURCEW(IDD_RECENT), GetActiveWindow(), recent_procedure,
                  reinterpret_cast<LPARAM>(&content));
}

}  // namespace snagtrap
