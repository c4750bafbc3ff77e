#include "StoreSamples.h"

using workbench::Rule;
using workbench::StoreContent;

Rule sample_rule(const std::wstring& name) { return {name, 99, 1, 1, 31, 2, 5, 6, 2, 1}; }

workbench::SymbolSourceSetting sample_setting(const std::wstring& name, const std::wstring& rule_name) {
  return {name, rule_name, L"exchange", L"HMUZ", true};
}

workbench::StoredCalendar sample_calendar(const std::string& name) {
  using namespace std::chrono;
  constexpr workbench::schedule::WeekdaySet friday_and_saturday = 0b1100000;
  return {{name,
           "title",
           "covers",
           "source",
           sys_days(2026y / 1 / 1),
           sys_days(2026y / 12 / 31),
           friday_and_saturday,
           {{sys_days(2026y / 1 / 1), "New Year"}, {sys_days(2026y / 5 / 4)}}},
          7};
}

StoreContent sample_content() {
  return {{sample_rule(L"first"), sample_rule(L"second")},
          {{L"copper", L"first"}, {L"unused", L""}, sample_setting(L"zinc", L"first")},
          {sample_calendar("exchange")}};
}

std::vector<std::wstring> awkward_names() {
  return {
      L"'; DROP TABLE rules; --",
      L"\"quoted\"",
      L"100%s %n %d",
      L" leading and trailing ",
      L"tab\tline\r\nend",
      L"\x01\x1F\x7F",
      L"沪深300股指期货",
      L"\U0001F4C8 chart",
      L"lone high \xD800",
      L"lone low \xDFFF end",
      L"\xDC00\xD800 swapped",
      std::wstring(L"null\0inside", 11),
      std::wstring(1, L'\0'),
      L"\xFFFF\xFFFE\xFEFF",
      std::wstring(63, L'W'),
      std::wstring(workbench::longest_name, L'\xFFFD'),
      L"case",
      L"Case",
      L"caf\u00E9",
      L"cafe\u0301",
  };
}

StoreSnapshot snapshot_of(workbench::RuleStore& store) {
  return {store.load_rules(), store.load_settings(), store.load_calendars()};
}

std::vector<workbench::SymbolSourceSetting> settings_of(workbench::RuleStore& store) {
  std::vector<workbench::SymbolSourceSetting> settings;
  for (const workbench::StoredSetting& stored : store.load_settings()) settings.push_back(stored.setting);
  return settings;
}

workbench::StoreCopy copy_without_changes(workbench::RuleStore& store) {
  workbench::StoreCopy copy = store.copy();
  copy.changes.clear();
  return copy;
}

namespace workbench {

void PrintTo(StoreErrorKind kind, std::ostream* stream) {
  constexpr const char* names[] = {
      "read_only",         "locked",          "full",           "damaged",   "foreign",     "newer",
      "unavailable",       "invalid_value",   "duplicate_name", "not_found", "changed",     "in_use",
      "setting_not_found", "setting_changed", "missing",        "no_driver", "unreachable", "login_refused",
      "connection_lost",   "overloaded",      "exists",         "uncertain", "cancelled"};
  *stream << names[static_cast<int>(kind)];
}

void PrintTo(const StoredRule& rule, std::ostream* stream) {
  *stream << "rule " << rule.number << " revision " << rule.revision << " name "
          << testing::PrintToString(rule.rule.name);
  for (const RuleColumn& column : rule_columns) *stream << ' ' << column.name << '=' << rule.rule.*column.value;
}

void PrintTo(const StoredChange& change, std::ostream* stream) {
  *stream << change.id << " by " << testing::PrintToString(change.user) << " at "
          << testing::PrintToString(change.time);
  for (const ChangedRow& row : change.rows)
    *stream << "; " << row.table << ' ' << row.key << ": " << row.old_row << " -> " << row.new_row;
}

}  // namespace workbench
