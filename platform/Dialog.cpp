#include "Dialog.h"

namespace platform {

INT_PTR dialog_proc_result(HWND dialog, UINT message, LRESULT result) noexcept {
  switch (message) {
    // The dialog manager takes the results of these from the procedure's return value.
    case WM_INITDIALOG:
    case WM_CHARTOITEM:
    case WM_VKEYTOITEM:
    case WM_COMPAREITEM:
    case WM_QUERYDRAGICON:
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC:
      return static_cast<INT_PTR>(result);
    default:
      SetWindowLongPtrW(dialog, DWLP_MSGRESULT, result);
      return TRUE;
  }
}

}  // namespace platform
