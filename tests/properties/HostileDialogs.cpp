#include "HostileDialogs.h"

#include <commctrl.h>

#include <algorithm>

#include "DialogScript.h"
#include "resource.h"

namespace properties_test {
namespace {

constexpr long largest_offset = 99;
constexpr long not_chosen = -1;
constexpr unsigned longest_name = 2000;

/// Whether a unit belongs to a script whose marks are placed by its font, from Hebrew to Myanmar, from the Philippines
/// to India and beyond: the edit controls of the test platform crash when they shape some of its nonsense, for example
/// U+0651 before U+FEEF, or U+0ECA after a unit of another script. Texts that no control shows have these units as
/// well.
bool is_shaped(wchar_t unit) {
  return (unit >= 0x0300 && unit <= 0x036F) || (unit >= 0x0590 && unit <= 0x109F) ||
         (unit >= 0x1700 && unit <= 0x1CFF) || (unit >= 0xA800 && unit <= 0xABFF) ||
         (unit >= 0xFB1D && unit <= 0xFDFF) || (unit >= 0xFE70 && unit <= 0xFEFF);
}

std::wstring without_nulls(std::wstring text) {
  std::erase(text, L'\0');
  return text;
}

/// A choice of a combo box, if the number is one.
long choice(long number, long first, long last) { return number >= first && number <= last ? number : not_chosen; }

}  // namespace

HostileDialogs::HostileDialogs() {
  const INITCOMMONCONTROLSEX controls = {sizeof controls, ICC_UPDOWN_CLASS | ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&controls);
}

INT_PTR HostileDialogs::edit(long rule_id, const std::function<void(HWND)>& act) {
  zd_expiration_rule_plugin::CEditExpirationRuleDialog dialog(&block, rule_id);
  const test_support::DialogDriver driver(test_support::DialogDriver::When::created, [&](HWND window, int number) {
    if (number == 1) act(window);
    if (number == 2) send_click(window, IDCANCEL);
  });
  return dialog.DoModal(nullptr);
}

void HostileDialogs::list(const std::function<void(HWND)>& act, const std::function<void(HWND)>& box) {
  zd_expiration_rule_plugin::CExpirationRulesListDialog dialog(&block);
  const test_support::DialogDriver driver(test_support::DialogDriver::When::created, [&](HWND window, int number) {
    if (!test_support::is_rule_list(window)) {
      box(window);
      return;
    }
    if (number == 1) act(window);
    send_click(window, IDCANCEL);
  });
  EXPECT_EQ(IDCANCEL, dialog.DoModal(nullptr));
}

std::wstring HostileDialogs::any_name() {
  switch (random.below(20)) {
    case 0:
      return {};
    case 1:
      return without_nulls(any_text(longest_name));
    default:
      return any_text(80);
  }
}

std::wstring HostileDialogs::any_text(unsigned longest) {
  std::wstring text = random.text(longest);
  std::replace_if(text.begin(), text.end(), is_shaped, L'?');
  return text;
}

std::wstring HostileDialogs::allowed_name() {
  static constexpr wchar_t allowed[] = L"ABCxyz0189* ";
  std::wstring name(1 + random.below(63), L'A');
  for (wchar_t& unit : name) unit = allowed[random.below(std::size(allowed) - 1)];
  return name;
}

HostRule saved_unchanged(const HostRule& rule) {
  // The spin holds 16 bits and stays within its range.
  const long offset = std::clamp<long>(static_cast<short>(rule.roll_offset), 0, largest_offset);
  return {rule.id,
          rule.name,
          offset,
          choice(rule.day_type, 0, 1),
          rule.day_mode == 0 ? 0 : 1,
          choice(rule.day_of_month, 1, 31),
          choice(rule.day_month, 0, 2),
          choice(rule.week_ordinal, 1, 5),
          choice(rule.weekday, 0, 6),
          choice(rule.weekday_month, 0, 2),
          rule.move_to_next_trading_day == 1 ? 1 : 0};
}

}  // namespace properties_test
