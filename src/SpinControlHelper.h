#pragma once

#include <windows.h>

#include <cstdint>

#include "ScopedFlag.h"
#include "SubclassedWindow.h"

namespace zd_expiration_rule_plugin::ui_helper {

/// Sent by a `CCustomEditForSpin` to its parent after every typed character, every key release and every cut, clear and
/// undo; wParam is the edit.
inline constexpr UINT edit_typed_message = WM_USER + 7;

/// The edit beside an up-down control. It notifies its parent of every change by the user and lets nothing be
/// pasted.
class CCustomEditForSpin final : public platform::CSubclassedWindow {
 public:
  CCustomEditForSpin() noexcept = default;
  ~CCustomEditForSpin() override = default;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                            DWORD mapId = 0) override;

  /// While the result lives, WM_SETTEXT does not replace the edit's text: an up-down control writes its number into its
  /// buddy whenever its position is set, which would rewrite what the user is typing and move the caret.
  [[nodiscard]] base::ScopedFlag keep_text() noexcept { return base::ScopedFlag(text_kept_); }

 private:
  bool text_kept_ = false;
};

/// An up-down control whose window its dialog owns.
class CSpin : public platform::CWindow {
 public:
  using CWindow::CWindow;

  void SetRange(short lower, short upper) const noexcept;
  /// The control holds 16 bits.
  void SetPos(long position) const noexcept;
  /// The position itself, whether or not the buddy's text fits it.
  long GetPos() const noexcept;
  HWND GetBuddy() const noexcept;
  void SetBuddy(HWND edit) const noexcept;
};

/// Writes `value` into the edit; asserts that the spin stands there already and does not move it. Throws a `_com_error`
/// when the number cannot be converted.
void AdjustEditControl(const CSpin& spin, const CCustomEditForSpin& edit, long value);

/// Moves the spin to the number in the edit, or to 0 when the edit is empty; the edit stays as it is. Throws a
/// `_com_error` with the conversion's HRESULT for a text that is no number.
void AdjustSpinControl(const CSpin& spin, CCustomEditForSpin& edit);

/// Appends a string of the module with its item data to a combo box. Throws `std::bad_alloc`.
void add_value_to_combo(const platform::CWindow& combo, int string_id, LPARAM item_data);

/// Selects the first item whose data equals `value`; without one the selection stays as it is.
void select_combo_value(const platform::CWindow& combo, long value) noexcept;

}  // namespace zd_expiration_rule_plugin::ui_helper
