#include "Scenarios.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <utility>

#include "DialogScript.h"
#include "RuleList.h"
#include "resource.h"

namespace faults_test {
namespace {

using test_support::DialogScript;
using test_support::Entry;
using test_support::Fault;
using test_support::HostRule;
using test_support::RuleList;
using test_support::send_click;

const HostRule used_rule = {3, L"CU spot", 1, 1, 1, 9, 2, 5, 6, 2, 1};
const HostRule free_rule = {7, L"IF quarter", 2, 0, 0, 15, 1, 3, 5, 1, 0};
constexpr long next_rule_id = 8;

bool begins_with(const std::string& text, const char* start) { return text.rfind(start, 0) == 0; }

bool any_begins_with(const Calls& calls, const char* start) {
  return std::any_of(calls.begin(), calls.end(), [&](const std::string& call) { return begins_with(call, start); });
}

/// The rules after the free one has become `rule`.
Rules with_free_rule_as(const HostRule& rule) { return {used_rule, rule}; }

Rules with_added(const HostRule& rule) { return {used_rule, free_rule, rule}; }

HostRule numbered(long id, HostRule rule) {
  rule.id = id;
  return rule;
}

HostRule named(const wchar_t* name, HostRule rule) {
  rule.name = name;
  return rule;
}

/// The rule that the user enters: every field differs from the old value and from the default.
HostRule entered_rule() { return {free_rule.id, L"IF month", 12, 1, 1, 31, 2, 4, 0, 0, 1}; }

constexpr wchar_t new_rule_name[] = L"新规则";

// Initialize.

/// A failure to obtain the storage leaves its entries empty, and an object that is no hot key leaves the id unknown;
/// every other failure, and every missing required object, ends `Initialize`.
bool ends_initialize(const std::string& call, const Fault& fault) {
  if (begins_with(call, "kvStorage::")) return false;
  if (begins_with(call, "kvHotKey::")) return FAILED(fault.result) && fault.result != E_NOINTERFACE;
  if (FAILED(fault.result)) return true;
  if (fault.out == Fault::Out::given) return false;
  return begins_with(call, "kvMainMenu::") || begins_with(call, "kvHotKeyCollection::") ||
         begins_with(call, "IkvMainMenu::AddSubMenu");
}

HRESULT initialize_result(const ScenarioResult&, const Calls& faulted_calls, const Fault& fault) {
  const bool ends = std::any_of(faulted_calls.begin(), faulted_calls.end(),
                                [&](const std::string& call) { return ends_initialize(call, fault); });
  return ends ? E_FAIL : S_OK;
}

ScenarioResult play_initialize(Session& session) {
  session.arm();
  return {session.initialize(), false, true};
}

ScenarioResult play_initialize_without_storage(Session& session) {
  session.arm();
  return {session.initialize_without_storage(), false, true};
}

// The rule list.

/// A command whose id cannot be read is unknown, unless its value arrives with a success code of another kind.
HRESULT command_result(const ScenarioResult&, const Calls& faulted_calls, const Fault& fault) {
  const bool unknown = fault.out != Fault::Out::given && any_begins_with(faulted_calls, "IkvMenuItem::get_CommandID");
  return unknown ? E_INVALIDARG : S_OK;
}

HRESULT dialog_result(const ScenarioResult&, const Calls&, const Fault&) { return S_OK; }

ScenarioResult play_list(Session& session) {
  session.initialize();
  int rules = 0;
  const auto show = [](HWND list) { ShowWindow(list, SW_SHOW); };
  const auto look = [&](HWND list) {
    RedrawWindow(list, nullptr, nullptr, RDW_ALLCHILDREN | RDW_UPDATENOW);
    rules = RuleList(list).count();
  };
  const DialogScript user({show, look});
  session.arm();
  const HRESULT hresult = session.command();
  return {hresult, false, rules == 2 && session.handles() > 0};
}

/// Presses a button when a rule is selected.
DialogScript::Step press_on(Session& session, long rule_id, int button) {
  return [&session, rule_id, button](HWND list) {
    RuleList(list).select_rule(rule_id);
    session.arm();
    send_click(list, button);
  };
}

ScenarioResult play_refused_delete(Session& session) {
  session.initialize();
  const DialogScript user({press_on(session, used_rule.id, IDC_DELETE_RULE)});
  const HRESULT hresult = session.command();
  return {hresult, false, user.warnings() == 1 && user.questions() == 0};
}

ScenarioResult play_delete(Session& session) {
  session.initialize();
  const DialogScript user({press_on(session, free_rule.id, IDC_DELETE_RULE)}, {}, free_rule.name);
  const HRESULT hresult = session.command();
  return {hresult, false, user.questions() == 1 && user.warnings() == 0};
}

ScenarioResult play_add(Session& session) {
  session.initialize();
  const DialogScript user({press_on(session, free_rule.id, IDC_ADD_RULE)}, {new_rule_name, entered_rule(), {}, {}});
  const HRESULT hresult = session.command();
  return {hresult, user.editors() == 1, user.editors() == 1 && user.warnings() == 0};
}

ScenarioResult play_refused_name(Session& session) {
  session.initialize();
  const auto open = [](HWND list) {
    RuleList(list).select_rule(free_rule.id);
    send_click(list, IDC_EDIT_RULE);
  };
  const DialogScript user({open}, {free_rule.name, named(used_rule.name.c_str(), entered_rule()), entered_rule().name,
                                   [&] { session.arm(); }});
  const HRESULT hresult = session.command();
  return {hresult, user.editors() == 1, user.warnings() == 1};
}

// The editor by itself.

bool has_no_table(const Calls& faulted_calls) {
  return any_begins_with(faulted_calls, "kvTable::") || any_begins_with(faulted_calls, "kvRuleFilter::") ||
         any_begins_with(faulted_calls, "IRunnableObject::");
}

/// Only the failure to create what the editor needs reaches the caller: the table and the filter for its rule.
HRESULT show_result(const ScenarioResult& result, const Calls& faulted_calls, const Fault& fault) {
  if (result.edited || !has_no_table(faulted_calls)) return S_OK;
  return FAILED(fault.result) ? fault.result : E_POINTER;
}

/// The creation of the table of a new rule returns no result: the table is only found to be missing.
HRESULT show_new_result(const ScenarioResult& result, const Calls& faulted_calls, const Fault&) {
  return result.edited || !has_no_table(faulted_calls) ? S_OK : E_POINTER;
}

ScenarioResult play_show_of(Session& session, long rule_id, Entry entry) {
  session.initialize();
  const DialogScript user({}, std::move(entry));
  session.arm();
  const HRESULT hresult = session.show(rule_id);
  return {hresult, user.editors() == 1, user.editors() == 1 && user.warnings() == 0};
}

ScenarioResult play_show(Session& session) {
  return play_show_of(session, free_rule.id, {free_rule.name, entered_rule(), {}, {}});
}

// `Add` covers saving a new rule.
ScenarioResult play_show_new(Session& session) {
  return play_show_of(session, 0, {new_rule_name, entered_rule(), {}, [&] { session.clear_faults(); }});
}

}  // namespace

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

const std::vector<Scenario>& every_scenario() {
  static const Rules unchanged = stored_rules();
  static const Rules edited = with_free_rule_as(entered_rule());
  static const Rules added = with_added(numbered(next_rule_id, entered_rule()));
  static const std::vector<Scenario> scenarios = {
      {"Initialize", play_initialize, initialize_result, E_FAIL, {unchanged}},
      {"InitializeWithoutStorage", play_initialize_without_storage, initialize_result, E_FAIL, {unchanged}},
      {"List", play_list, command_result, E_FAIL, {unchanged}},
      {"RefusedDelete", play_refused_delete, dialog_result, E_FAIL, {unchanged}},
      {"Delete", play_delete, dialog_result, E_FAIL, {{used_rule}, unchanged}},
      {"Add", play_add, dialog_result, E_FAIL, {added, unchanged}},
      {"RefusedName", play_refused_name, dialog_result, E_FAIL, {edited, unchanged}},
      {"Show", play_show, show_result, E_OUTOFMEMORY, {edited, unchanged}},
      {"ShowNew", play_show_new, show_new_result, E_OUTOFMEMORY, {added, unchanged}},
  };
  return scenarios;
}

Rules stored_rules() { return {used_rule, free_rule}; }

std::vector<test_support::HostSetting> stored_settings() { return {{L"main", L"CU spot"}, {L"other", L"AU"}}; }

}  // namespace faults_test
