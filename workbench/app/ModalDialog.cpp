#include "ModalDialog.h"

#include <utility>

#include "Hresult.h"
#include "ModulePath.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "resource.h"

namespace workbench {

INT_PTR ModalDialog::run(HWND owner) {
  const INT_PTR result = DialogBoxIndirectParamW(base::module_instance(), find_dialog(id_), owner, &procedure,
                                                 reinterpret_cast<LPARAM>(this));
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
  if (result == -1) base::throw_last_failure();
  return result;
}

void ModalDialog::show_mistake(const std::wstring& message, HWND control) {
  MessageBoxW(handle_, message.c_str(), text(IDS_TITLE).c_str(), MB_OK | MB_ICONWARNING);
  SendMessageW(handle_, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(control), TRUE);
}

void ModalDialog::place(ListPane& pane, int area_id) const {
  HWND area_control = control(area_id);
  RECT area{};
  GetWindowRect(area_control, &area);
  MapWindowPoints(nullptr, handle(), reinterpret_cast<POINT*>(&area), 2);
  ShowWindow(area_control, SW_HIDE);
  const int dpi = static_cast<int>(GetDpiForWindow(handle()));
  pane.use_font(reinterpret_cast<HFONT>(SendMessageW(handle(), WM_GETFONT, 0, 0)), dpi);
  const int heading = MulDiv(20, dpi, USER_DEFAULT_SCREEN_DPI);
  const int width = static_cast<int>(area.right - area.left);
  SetWindowPos(pane.heading(), area_control, area.left, area.top, width, heading, SWP_NOACTIVATE);
  SetWindowPos(pane.list(), area_control, area.left, area.top + heading, width,
               static_cast<int>(area.bottom - area.top) - heading, SWP_NOACTIVATE);
}

INT_PTR CALLBACK ModalDialog::procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept {
  if (message == WM_INITDIALOG) {
    reinterpret_cast<ModalDialog*>(lparam)->handle_ = window;
    SetWindowLongPtrW(window, DWLP_USER, lparam);
  }
  auto* dialog = reinterpret_cast<ModalDialog*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!dialog) return FALSE;
  try {
    return dialog->handle_message(message, wparam, lparam);
  } catch (...) {
    dialog->failure_ = std::current_exception();
    EndDialog(window, IDCANCEL);
    return TRUE;
  }
}

INT_PTR ModalDialog::handle_message(UINT message, WPARAM wparam, LPARAM lparam) {
  switch (message) {
    case WM_INITDIALOG:
      on_init();
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wparam) == IDCANCEL) {
        close(IDCANCEL);
      } else {
        on_command(LOWORD(wparam), HIWORD(wparam));
      }
      return TRUE;
    case WM_NOTIFY:
      SetWindowLongPtrW(handle_, DWLP_MSGRESULT, on_notify(*reinterpret_cast<NMHDR*>(lparam)));
      return TRUE;
    default:
      return FALSE;
  }
}

}  // namespace workbench
