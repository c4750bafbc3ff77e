#pragma once

#include <windows.h>

#include "DpiAwareness.h"
#include "ModulePath.h"
#include "Report.h"
#include "Window.h"

namespace platform {

/// What a dialog procedure returns for a message that its dialog handled with `result`.
INT_PTR dialog_proc_result(HWND dialog, UINT message, LRESULT result) noexcept;

/// A dialog created from the resource `T::IDD` of the module; `TBase` is a window class like `CWindow`. Messages reach
/// `ProcessWindowMessage` from WM_INITDIALOG to WM_NCDESTROY; those before and after go the default way. An exception
/// of a handler ends at the dialog procedure: it is reported there and the message counts as not handled. A dialog
/// whose WM_INITDIALOG throws is closed at once with IDCANCEL, because half-filled controls must not be saved. Its
/// windows are never aware of each monitor's DPI.
template <class T, class TBase = CWindow>
class CDialogImpl : public TBase {
 public:
  CDialogImpl() = default;
  CDialogImpl(const CDialogImpl&) = delete;
  CDialogImpl& operator=(const CDialogImpl&) = delete;

  /// Handles one message: returns TRUE when it is handled, with the message's result in `result`. Map 0 is the only
  /// one.
  virtual BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                    DWORD mapId = 0) = 0;

  /// Runs the dialog modally over `owner` (may be null). Returns what `EndDialog` was given, -1 when it cannot be
  /// created.
  INT_PTR DoModal(HWND owner) {
    const ScopedSystemDpiAwareness system_dpi;
    return DialogBoxParamW(base::module_instance(), MAKEINTRESOURCEW(T::IDD), owner, &CDialogImpl::DialogProcedure,
                           reinterpret_cast<LPARAM>(this));
  }

  /// Creates the dialog without a loop of its own. Null when it cannot be created. The window must be destroyed before
  /// the object.
  HWND Create(HWND owner) {
    const ScopedSystemDpiAwareness system_dpi;
    return CreateDialogParamW(base::module_instance(), MAKEINTRESOURCEW(T::IDD), owner, &CDialogImpl::DialogProcedure,
                              reinterpret_cast<LPARAM>(this));
  }

  /// Whether the dialog has its window and has not been ended. The owner can be destroyed, and the dialog with it, or
  /// the dialog be ended in whatever lets messages through: a call of the host, a report, a message box. Checked after
  /// each of these before the dialog continues.
  bool is_open() const noexcept { return !ended_ && IsWindow(this->m_hWnd); }

  BOOL EndDialog(INT_PTR result) noexcept {
    SnagtrapUtil::expect(IsWindow(this->m_hWnd) != FALSE, L"::IsWindow(m_hWnd)", ZD_LOCATION);
    ended_ = true;
    return ::EndDialog(this->m_hWnd, result);
  }

 protected:
  virtual ~CDialogImpl() = default;

 private:
  static CDialogImpl* bound(HWND window, UINT message, LPARAM lParam) noexcept {
    auto* dialog = reinterpret_cast<CDialogImpl*>(GetWindowLongPtrW(window, DWLP_USER));
    if (dialog || message != WM_INITDIALOG) return dialog;
    dialog = reinterpret_cast<CDialogImpl*>(lParam);
    SetWindowLongPtrW(window, DWLP_USER, lParam);
    if (dialog) {
      dialog->m_hWnd = window;
      dialog->ended_ = false;
    }
    return dialog;
  }

  static INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) noexcept {
    CDialogImpl* dialog = bound(window, message, lParam);
    if (!dialog) return FALSE;
    INT_PTR answer = FALSE;
    try {
      LRESULT result = 0;
      if (dialog->ProcessWindowMessage(window, message, wParam, lParam, result)) {
        answer = dialog_proc_result(window, message, result);
      }
    } catch (...) {
      SnagtrapUtil::report_exception_in_flight(ZD_LOCATION);
      if (message == WM_INITDIALOG) ::EndDialog(window, IDCANCEL);
    }
    if (message == WM_NCDESTROY) {
      SetWindowLongPtrW(window, DWLP_USER, 0);
      dialog->m_hWnd = nullptr;
    }
    return answer;
  }

  bool ended_ = false;
};

}  // namespace platform
