#pragma once

#include <functional>
#include <string>

#include "DialogDriver.h"
#include "EditExpirationRuleDialog.h"
#include "ExpirationRulesListDialog.h"
#include "RandomCases.h"
#include "RegistrySandbox.h"
#include "RuleEditor.h"
#include "RuleList.h"
#include "StorageTest.h"

namespace properties_test {

using test_support::HostRule;
using test_support::HostSetting;
using test_support::RuleEditor;
using test_support::RuleList;
using test_support::send_click;

/// What a control or a message box shows of a text.
inline std::wstring up_to_null(const std::wstring& text) { return text.substr(0, text.find(L'\0')); }

/// The two dialogs on a host that stores anything at all.
class HostileDialogs : public storage_test::StorageTest {
 protected:
  HostileDialogs();

  /// Opens the editor of a rule, lets `act` look at it and press OK, and cancels it when it is still open. Returns the
  /// dialog's result.
  INT_PTR edit(long rule_id, const std::function<void(HWND editor)>& act);
  /// Opens the list, lets `act` use it and closes it. Message boxes are visited by `box`, which ends them.
  void list(const std::function<void(HWND list)>& act, const std::function<void(HWND box)>& box = {});

  /// A name of any units, empty, short or very long.
  std::wstring any_name();
  /// Up to `longest` units of any value that a control can show on the test platform.
  std::wstring any_text(unsigned longest);
  /// A name that the editor takes.
  std::wstring allowed_name();

  test_support::RegistrySandbox registry;
  test_support::RandomCases random;
};

/// The rule as it is stored when the editor is opened on it and OK is pressed.
HostRule saved_unchanged(const HostRule& rule);

}  // namespace properties_test
