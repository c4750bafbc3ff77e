#pragma once

#include <windows.h>

#include <exception>
#include <string>

#include "DialogControls.h"
#include "ListPane.h"

namespace workbench {

/// Base of a modal dialog whose messages go to an object. An exception of a handler closes the dialog and leaves `run`.
class ModalDialog {
 public:
  ModalDialog(const ModalDialog&) = delete;
  ModalDialog& operator=(const ModalDialog&) = delete;

  /// Shows the dialog until it is closed, and returns what `close` was given; IDCANCEL when the user cancelled. Throws
  /// `_com_error` when the system refuses.
  INT_PTR run(HWND owner);

 protected:
  /// `id` names the dialog's template.
  explicit ModalDialog(UINT id) : id_(id) {}
  ~ModalDialog() = default;

  HWND handle() const noexcept { return handle_; }
  HWND control(int id) const noexcept { return GetDlgItem(handle_, id); }
  void close(INT_PTR result) noexcept { EndDialog(handle_, result); }

  /// Puts the list where the template has the control `area_id`, which is hidden.
  void place(ListPane& pane, int area_id) const;

  /// Shows a message over the dialog, then puts the focus on a control.
  void show_mistake(const std::wstring& message, HWND control);

  virtual void on_init() = 0;
  /// A command other than Cancel, which closes the dialog.
  virtual void on_command(WORD id, WORD code) = 0;
  virtual LRESULT on_notify(NMHDR&) { return 0; }

 private:
  static INT_PTR CALLBACK procedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) noexcept;
  INT_PTR handle_message(UINT message, WPARAM wparam, LPARAM lparam);

  UINT id_;
  HWND handle_ = nullptr;
  std::exception_ptr failure_;
};

}  // namespace workbench
