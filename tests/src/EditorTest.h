#pragma once

#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include <functional>

#include "DialogDriver.h"
#include "EditExpirationRuleDialog.h"
#include "ExpectedReports.h"
#include "FilledBlock.h"
#include "RecordingHost.h"
#include "RuleEditor.h"
#include "resource.h"

namespace editor_test {

using test_support::Fault;
using test_support::HostRule;
using zd_expiration_rule_plugin::CEditExpirationRuleDialog;

inline constexpr int day_of_month_group[] = {IDC_DAY_OF_MONTH, IDC_DAY_SUFFIX, IDC_DAY_MONTH};
inline constexpr int weekday_group[] = {IDC_WEEK_ORDINAL, IDC_WEEKDAY, IDC_WEEKDAY_SUFFIX, IDC_WEEKDAY_MONTH};
inline constexpr int combos[] = {IDC_DAY_TYPE,     IDC_DAY_OF_MONTH, IDC_DAY_MONTH,
                                 IDC_WEEK_ORDINAL, IDC_WEEKDAY,      IDC_WEEKDAY_MONTH};

/// The open editor, as its user sees and uses it, and the dialog object behind it.
class Editor : public test_support::RuleEditor {
 public:
  Editor(HWND window, CEditExpirationRuleDialog& dialog) : RuleEditor(window), dialog_(dialog) {}

  CEditExpirationRuleDialog& dialog() const { return dialog_; }

  /// Clicks OK, reads the message box that appears and closes it.
  test_support::MessageBoxContent refused_ok() const {
    return test_support::with_message_box([this] { ok(); });
  }

  /// Hands a message to the dialog's message map; returns whether it was handled and fails the test when the result of
  /// a handled one is not 0.
  bool handles(UINT message, WPARAM wParam, LPARAM lParam) const;
  bool handles_command(int id, int notification) const;

 private:
  CEditExpirationRuleDialog& dialog_;
};

/// The assertion that an offset is shown at which the spin does not stand.
inline constexpr char offset_is_not_the_spins[] =
    "ASSERT value == _spin.GetPos() | SpinControlHelper.cpp:* AdjustEditControl";

/// The description that the editor shows, of the pieces that depend on the rule.
std::wstring sentence(const std::wstring& offset, const std::wstring& day_type, const std::wstring& day,
                      const std::wstring& direction);
/// The piece of the first day of the contract month.
inline constexpr wchar_t day_piece[] = L" 第1 天， 当月";

/// A host that stores rule 5, and the editor on it.
class EditorTest : public testing::Test {
 protected:
  static constexpr long stored_id = 5;

  EditorTest();
  ~EditorTest() override;

  /// Opens the editor, lets the user act, clicks Cancel unless the dialog is closed then, and returns its result. 0
  /// opens a new rule.
  INT_PTR edit(long rule_id, const std::function<void(Editor&)>& act);
  INT_PTR edit(const std::function<void(Editor&)>& act) { return edit(stored_id, act); }
  /// Opens the editor and clicks OK at once.
  void save_unchanged(long rule_id = stored_id);

  HostRule& rule() { return host.rules().front(); }
  /// What was reported since the last call. Every test takes all reports: one that is left fails it.
  static std::vector<std::string> reports() { return test_support::take_reports_without_lines(); }

  test_support::RecordingHost host;
  StorageBlock block = test_support::filled_block(host.storage());
};

}  // namespace editor_test
