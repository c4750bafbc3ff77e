#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include <functional>

#include "Controls.h"
#include "DialogDriver.h"
#include "ExpectedReports.h"
#include "ModulePath.h"
#include "OwnedWindow.h"
#include "SpinControlHelper.h"
#include "ThrownBy.h"
#include "WindowText.h"
#include "resource.h"

namespace zd_expiration_rule_plugin::ui_helper {
namespace {

using test_support::combo_data;
using test_support::combo_texts;
using test_support::thrown_by;
using testing::ElementsAre;
using testing::IsEmpty;

using Procedure = std::function<LRESULT(HWND, UINT, WPARAM, LPARAM)>;

LRESULT CALLBACK call_procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  const auto* procedure = reinterpret_cast<const Procedure*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  return procedure ? (*procedure)(window, message, wParam, lParam) : DefWindowProcW(window, message, wParam, lParam);
}

/// A window whose messages go to a function of the test.
HWND make_window(const Procedure& procedure) {
  WNDCLASSW window_class = {};
  window_class.lpfnWndProc = call_procedure;
  window_class.hInstance = base::module_instance();
  window_class.lpszClassName = L"SpinControlHelperTest";
  RegisterClassW(&window_class);
  HWND window = CreateWindowW(window_class.lpszClassName, L"", WS_OVERLAPPEDWINDOW, 0, 0, 200, 100, nullptr, nullptr,
                              window_class.hInstance, nullptr);
  SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(&procedure));
  return window;
}

class SpinControl : public testing::Test {
 protected:
  SpinControl() {
    const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_UPDOWN_CLASS};
    InitCommonControlsEx(&controls);
    window = child(L"EDIT", WS_CHILD | ES_AUTOHSCROLL);
    spin.Attach(child(UPDOWN_CLASSW, WS_CHILD | UDS_SETBUDDYINT | UDS_ARROWKEYS));
    spin.SetBuddy(window);
    spin.SetRange(0, 99);
    spin.SetPos(0);
    SetWindowTextW(window, L"");
    edit.SubclassWindow(window);
  }

  HWND child(const wchar_t* class_name, DWORD style) {
    return CreateWindowW(class_name, L"", style, 0, 0, 50, 20, parent_.get(), nullptr, base::module_instance(),
                         nullptr);
  }

  platform::CWindow combo() { return platform::CWindow(child(L"COMBOBOX", WS_CHILD | CBS_DROPDOWNLIST)); }
  static std::vector<std::string> reports() { return test_support::take_reports_without_lines(); }

  HWND window = nullptr;
  CSpin spin;
  CCustomEditForSpin edit;
  /// The edit's text at each notification.
  std::vector<std::wstring> notified;

 private:
  LRESULT on_message(HWND self, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != edit_typed_message) return DefWindowProcW(self, message, wParam, lParam);
    EXPECT_EQ(reinterpret_cast<WPARAM>(window), wParam);
    EXPECT_EQ(0, lParam);
    notified.push_back(base::window_text(window));
    return 77;
  }

  Procedure procedure_ = [this](HWND self, UINT message, WPARAM wParam, LPARAM lParam) {
    return on_message(self, message, wParam, lParam);
  };
  test_support::OwnedWindow parent_{make_window(procedure_)};
};

TEST_F(SpinControl, NotificationIsMessage1031) { EXPECT_EQ(1031u, edit_typed_message); }

TEST_F(SpinControl, EachCharacterReachesTheEditFirstAndThenTheParent) {
  EXPECT_EQ(0, SendMessageW(window, WM_CHAR, L'4', 1));
  EXPECT_EQ(0, SendMessageW(window, WM_CHAR, L'2', 1));
  EXPECT_THAT(notified, ElementsAre(L"4", L"42"));
}

TEST_F(SpinControl, EachKeyReleaseReachesTheParentAlsoWhenItChangesNothing) {
  EXPECT_EQ(0, SendMessageW(window, WM_KEYUP, VK_SHIFT, 1));
  EXPECT_EQ(0, SendMessageW(window, WM_KEYUP, VK_LEFT, 1));
  EXPECT_THAT(notified, ElementsAre(L"", L""));
}

TEST_F(SpinControl, KeyPressesAndOtherMessagesReachNoOtherWindow) {
  SendMessageW(window, WM_KEYDOWN, VK_LEFT, 1);
  SendMessageW(window, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"8"));
  EXPECT_EQ(L"8", base::window_text(window));
  EXPECT_THAT(notified, IsEmpty());
}

TEST_F(SpinControl, NothingIsPasted) {
  for (const wchar_t* content : {L"12", L"ab"}) {
    ASSERT_TRUE(OpenClipboard(window));
    EmptyClipboard();
    const std::size_t size = (wcslen(content) + 1) * sizeof(wchar_t);
    HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, size);
    memcpy(GlobalLock(memory), content, size);
    GlobalUnlock(memory);
    SetClipboardData(CF_UNICODETEXT, memory);
    CloseClipboard();
    EXPECT_EQ(0, SendMessageW(window, WM_PASTE, 0, 0));
    EXPECT_EQ(L"", base::window_text(window));
  }
  EXPECT_THAT(notified, IsEmpty());
}

TEST_F(SpinControl, AnotherMessageMapIsAnAssertion) {
  LRESULT result = 0;
  EXPECT_FALSE(edit.ProcessWindowMessage(window, WM_PASTE, 0, 0, result, 1));
  EXPECT_THAT(reports(), ElementsAre(testing::StartsWith("ASSERT ")));
}

TEST_F(SpinControl, EditBecomesAnOrdinaryOneWhenTheHelperEnds) {
  edit.UnsubclassWindow();
  SendMessageW(window, WM_CHAR, L'4', 1);
  EXPECT_EQ(L"4", base::window_text(window));
  EXPECT_THAT(notified, IsEmpty());
}

TEST_F(SpinControl, EditMayBeDestroyedBeforeTheHelper) {
  DestroyWindow(window);
  EXPECT_EQ(nullptr, edit.m_hWnd);
}

TEST_F(SpinControl, TakesThePositionFromTheLowWordWhateverTheHighWordSays) {
  LRESULT returned = 0;
  const Procedure procedure = [&](HWND self, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == UDM_GETPOS ? returned : DefWindowProcW(self, message, wParam, lParam);
  };
  const test_support::OwnedWindow owner(make_window(procedure));
  const CSpin fake(owner.get());
  const struct {
    LRESULT returned;
    long position;
  } rows[] = {{MAKELONG(7, 0), 7}, {MAKELONG(7, 1), 7}, {MAKELONG(0, 0xFFFF), 0}, {MAKELONG(0xFFFF, 0), -1}};
  for (const auto& row : rows) {
    returned = row.returned;
    EXPECT_EQ(row.position, fake.GetPos());
  }
}

TEST_F(SpinControl, EditIsGivenTheDecimalText) {
  spin.SetPos(42);
  AdjustEditControl(spin, edit, 42);
  EXPECT_EQ(L"42", base::window_text(window));
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(SpinControl, EditIsGivenEveryNumberAndTheSpinStays) {
  for (const long value : {-1L, 100L, LONG_MAX, LONG_MIN}) {
    spin.SetPos(42);
    AdjustEditControl(spin, edit, value);
    EXPECT_EQ(std::to_wstring(value), base::window_text(window));
    EXPECT_THAT(reports(), ElementsAre("ASSERT value == _spin.GetPos() | SpinControlHelper.cpp:* AdjustEditControl"));
    EXPECT_EQ(42, spin.GetPos());
  }
}

TEST_F(SpinControl, SpinFollowsTheEditWhichStaysAsItIs) {
  const struct {
    const wchar_t* text;
    long position;
  } rows[] = {{L"5", 5}, {L"97", 97}, {L"", 0}, {L"07", 7}, {L"0", 0}, {L" 8 ", 8}, {L"150", 99}, {L"-3", 0}};
  for (const auto& row : rows) {
    edit.SetText(row.text);
    AdjustSpinControl(spin, edit);
    EXPECT_EQ(row.text, base::window_text(window));
    EXPECT_EQ(row.position, spin.GetPos()) << testing::PrintToString(row.text);
  }
}

TEST_F(SpinControl, SpinStaysWhereItIsWhenTheTextIsNoNumber) {
  const struct {
    const wchar_t* text;
    HRESULT thrown;
  } rows[] = {{L"abc", DISP_E_TYPEMISMATCH}, {L"-", DISP_E_TYPEMISMATCH}, {L"99999999999", DISP_E_OVERFLOW}};
  for (const auto& row : rows) {
    spin.SetPos(3);
    edit.SetText(row.text);
    EXPECT_EQ(row.thrown, thrown_by([&] { AdjustSpinControl(spin, edit); }));
    EXPECT_EQ(row.text, base::window_text(window));
    EXPECT_EQ(3, spin.GetPos());
  }
}

TEST_F(SpinControl, EditTakesTextsAgainAfterTheSpinFollowedIt) {
  edit.SetText(L"5");
  AdjustSpinControl(spin, edit);
  edit.SetText(L"abc");
  EXPECT_EQ(DISP_E_TYPEMISMATCH, thrown_by([&] { AdjustSpinControl(spin, edit); }));
  edit.SetText(L"6");
  EXPECT_EQ(L"6", base::window_text(window));
}

TEST_F(SpinControl, ComboIsGivenTheModulesTextAndTheWholeItemData) {
  const platform::CWindow list = combo();
  add_value_to_combo(list, IDS_TRADING_DAYS, 0x1'2345'6789);
  add_value_to_combo(list, IDS_CALENDAR_DAYS, -1);
  EXPECT_THAT(combo_texts(list.m_hWnd), ElementsAre(L"交易日", L"日历日"));
  EXPECT_THAT(combo_data(list.m_hWnd), ElementsAre(0x1'2345'6789, -1));
}

TEST_F(SpinControl, ComboThatTakesNoTextIsAsserted) {
  LRESULT position = 0;
  const Procedure refuses = [&](HWND self, UINT message, WPARAM wParam, LPARAM lParam) {
    return message == CB_ADDSTRING ? position : DefWindowProcW(self, message, wParam, lParam);
  };
  const test_support::OwnedWindow owner(make_window(refuses));
  const platform::CWindow list(owner.get());
  for (const LRESULT failure : {CB_ERR, CB_ERRSPACE}) {
    position = failure;
    add_value_to_combo(list, IDS_TRADING_DAYS, 0);
    EXPECT_THAT(reports(), ElementsAre("ASSERT pos != (-1) | SpinControlHelper.cpp:* add_value_to_combo"));
  }
}

TEST_F(SpinControl, ComboSelectsTheFirstItemWhoseDataMatchesIn32Bits) {
  const platform::CWindow list = combo();
  for (const LPARAM data : {LPARAM{7}, LPARAM{0x1'0000'0003}, LPARAM{3}, LPARAM{-1}}) {
    add_value_to_combo(list, IDS_TRADING_DAYS, data);
  }
  const struct {
    long value;
    LRESULT index;
  } rows[] = {{7, 0}, {3, 1}, {-1, 3}};
  for (const auto& row : rows) {
    select_combo_value(list, row.value);
    EXPECT_EQ(row.index, list.Send(CB_GETCURSEL));
  }
}

TEST_F(SpinControl, ComboKeepsItsSelectionWhenNothingMatches) {
  const platform::CWindow list = combo();
  select_combo_value(list, 0);
  EXPECT_EQ(CB_ERR, list.Send(CB_GETCURSEL));
  add_value_to_combo(list, IDS_TRADING_DAYS, 0);
  select_combo_value(list, 1);
  EXPECT_EQ(CB_ERR, list.Send(CB_GETCURSEL));
  list.Send(CB_SETCURSEL, 0);
  select_combo_value(list, 1);
  EXPECT_EQ(0, list.Send(CB_GETCURSEL));
}

TEST_F(SpinControl, EveryWrapperAssertsThatItsWindowExists) {
  const CSpin no_spin;
  const CCustomEditForSpin no_edit;
  no_spin.SetPos(1);
  no_edit.SetText(L"1");
  EXPECT_EQ(L"", no_edit.GetText());
  select_combo_value(platform::CWindow(), 1);
  const auto reported = reports();
  EXPECT_EQ(4u, reported.size());
  EXPECT_THAT(reported, testing::Each(testing::StartsWith("ASSERT ::IsWindow(m_hWnd) | ")));
}

}  // namespace
}  // namespace zd_expiration_rule_plugin::ui_helper
