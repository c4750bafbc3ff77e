#include "SpinControlHelper.h"

#include <commctrl.h>

#include "ComStrings.h"
#include "Report.h"
#include "string_t.h"

namespace zd_expiration_rule_plugin::ui_helper {

namespace {

long number_of(std::wstring text) {
  if (text.empty()) text = L"0";
  long number = 0;
  const HRESULT hr = VarI4FromStr(text.data(), LOCALE_USER_DEFAULT, 0, &number);
  if (FAILED(hr)) throw _com_error(hr);
  return number;
}

_bstr_t text_of(long number) {
  BSTR text = nullptr;
  const HRESULT hr = VarBstrFromI4(number, LOCALE_USER_DEFAULT, 0, &text);
  if (FAILED(hr)) throw _com_error(hr);
  return platform::take_string(text);
}

void notify_parent(HWND edit) noexcept {
  SendMessageW(GetParent(edit), edit_typed_message, reinterpret_cast<WPARAM>(edit), 0);
}

}  // namespace

BOOL CCustomEditForSpin::ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result,
                                              DWORD mapId) {
  if (!SnagtrapUtil::expect(mapId == 0, L"0", ZD_LOCATION)) return FALSE;
  switch (message) {
    case WM_CHAR:
    case WM_KEYUP:
      CallOriginal(message, wParam, lParam);
      notify_parent(window);
      result = 0;
      return TRUE;
    case WM_CUT:
    case WM_CLEAR:
    case WM_UNDO:
    case EM_UNDO:
      result = CallOriginal(message, wParam, lParam);
      notify_parent(window);
      return TRUE;
    case WM_PASTE:
      result = 0;
      return TRUE;
    case WM_SETTEXT:
      result = TRUE;
      return text_kept_;
    default:
      return FALSE;
  }
}

void CSpin::SetRange(short lower, short upper) const noexcept { Send(UDM_SETRANGE, 0, MAKELPARAM(upper, lower)); }

void CSpin::SetPos(long position) const noexcept { Send(UDM_SETPOS, 0, MAKELPARAM(position, 0)); }

long CSpin::GetPos() const noexcept { return static_cast<short>(LOWORD(Send(UDM_GETPOS))); }

HWND CSpin::GetBuddy() const noexcept { return reinterpret_cast<HWND>(Send(UDM_GETBUDDY)); }

void CSpin::SetBuddy(HWND edit) const noexcept { Send(UDM_SETBUDDY, reinterpret_cast<WPARAM>(edit)); }

void AdjustEditControl(const CSpin& spin, const CCustomEditForSpin& edit, long value) {
  const _bstr_t text = text_of(value);
  edit.SetText(text);
  SnagtrapUtil::expect(value == spin.GetPos(), L"value == _spin.GetPos()", ZD_LOCATION);
}

void AdjustSpinControl(const CSpin& spin, CCustomEditForSpin& edit) {
  const long number = number_of(edit.GetText());
  const base::ScopedFlag text_kept = edit.keep_text();
  spin.SetPos(number);
}

void add_value_to_combo(const platform::CWindow& combo, int string_id, LPARAM item_data) {
  const std::wstring text = resource_string::resourse_2_string_impl(string_id);
  const LRESULT pos = combo.Send(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
  SnagtrapUtil::expect(pos != CB_ERR && pos != CB_ERRSPACE, L"pos != (-1)", ZD_LOCATION);
  combo.Send(CB_SETITEMDATA, static_cast<WPARAM>(pos), item_data);
}

void select_combo_value(const platform::CWindow& combo, long value) noexcept {
  for (LRESULT index = 0; index < combo.Send(CB_GETCOUNT); ++index) {
    const auto data = static_cast<std::uint32_t>(combo.Send(CB_GETITEMDATA, static_cast<WPARAM>(index)));
    if (data == static_cast<std::uint32_t>(value)) {
      combo.Send(CB_SETCURSEL, static_cast<WPARAM>(index));
      return;
    }
  }
}

}  // namespace zd_expiration_rule_plugin::ui_helper
