#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Calendar.h"
#include "FieldIds.h"
#include "RuleNumbers.h"

namespace workbench {

/// The longest name of a rule or a symbol source setting, in UTF-16 code units.
inline constexpr std::size_t longest_name = 255;

/// The rule for a contract's expiration. `rule_columns` gives the ranges of the numbers.
struct Rule {
  std::wstring name;  ///< any UTF-16 code units, 1 to `longest_name` of them
  long roll_offset = 0;
  long day_type = 0;
  long day_mode = 0;
  long day_of_month = 1;
  long day_month = 1;
  long week_ordinal = 1;
  long weekday = 1;
  long weekday_month = 1;
  long move_to_next_trading_day = 0;

  bool operator==(const Rule&) const = default;
};

/// Counts the changes of one rule or setting, from 1. It says whether a record is still what its reader saw.
using Revision = std::int64_t;

/// A rule as a store keeps it.
struct StoredRule {
  long number = 0;  ///< 1 or more, never given twice by one store
  Revision revision = 0;
  Rule rule;

  bool operator==(const StoredRule&) const = default;
};

/// A symbol source setting, the rule that it uses and what its contracts need besides.
struct SymbolSourceSetting {
  std::wstring name;                    ///< 1 to `longest_name` code units; several settings may have one name
  std::wstring rule_name;               ///< empty when it uses no rule; the rule need not exist
  std::wstring calendar{};              ///< empty when it names none; the calendar need not exist
  std::wstring months{};                ///< letters of delivery months, ascending, such as HMUZ; empty: all
  bool last_day_is_expiration = false;  ///< the contract's last trading day; otherwise it is the roll day

  bool operator==(const SymbolSourceSetting&) const = default;
};

/// A symbol source setting as a store keeps it.
struct StoredSetting {
  long number = 0;  ///< 1 or more, never given twice by one store
  Revision revision = 0;
  SymbolSourceSetting setting;

  bool operator==(const StoredSetting&) const = default;
};

/// A trading calendar as a store keeps it.
struct StoredCalendar {
  schedule::Calendar calendar;
  /// The version of the shipped calendars that the user has, or did not want in place of this one; 0: none.
  long shipped_version = 0;

  bool operator==(const StoredCalendar&) const = default;
};

/// Everything that a store holds.
struct StoreContent {
  std::vector<Rule> rules;
  std::vector<SymbolSourceSetting> settings;
  std::vector<StoredCalendar> calendars{};

  bool operator==(const StoreContent&) const = default;
};

/// What a change did to one record, as a store's table of changes keeps it.
struct ChangedRow {
  std::string table;    ///< of the record
  std::string key;      ///< the record's number, or the calendar's name
  std::string old_row;  ///< the record before, as `normalized_json` gives it; empty: the change added it
  std::string new_row;  ///< the record after; empty: the change deleted it

  bool operator==(const ChangedRow&) const = default;
};

/// A change of a store, as its table of changes keeps it.
struct StoredChange {
  std::string id;     ///< 32 hexadecimal digits, which no other change has
  std::wstring user;  ///< see `RuleChange::user`
  std::wstring time;  ///< see `RuleChange::time`
  std::vector<ChangedRow> rows;

  bool operator==(const StoredChange&) const = default;
};

/// Everything that a store holds, with its numbers and revisions: what a copy of the store is created from.
struct StoreCopy {
  std::vector<StoredRule> rules;
  std::vector<StoredSetting> settings;
  std::vector<StoredCalendar> calendars;
  long last_rule_number = 0;            ///< the last that was given to a rule, which may be deleted by now
  long last_setting_number = 0;         ///< the same of a setting
  std::vector<StoredChange> changes{};  ///< in the order in which they happened

  bool operator==(const StoreCopy&) const = default;
};

/// Records that come from a file.
struct StoreImport {
  std::vector<Rule> rules;                                     ///< each changes the rule of its name, or is added
  std::optional<std::vector<SymbolSourceSetting>> settings{};  ///< replace all settings
};

/// One number of a rule: its host field, its name in the store, and the least and the greatest value.
struct RuleColumn {
  tagKVFIELDID field;
  const char* name;
  long Rule::*value;
  long least;
  long greatest;
};

constexpr auto columns_of_rule_fields() {
  constexpr std::array<std::pair<tagKVFIELDID, long Rule::*>, schedule::rule_fields.size()> numbers{{
      {KVFIELD_ROLL_OFFSET, &Rule::roll_offset},
      {KVFIELD_DAY_TYPE, &Rule::day_type},
      {KVFIELD_DAY_MODE, &Rule::day_mode},
      {KVFIELD_DAY_OF_MONTH, &Rule::day_of_month},
      {KVFIELD_DAY_MONTH, &Rule::day_month},
      {KVFIELD_WEEK_ORDINAL, &Rule::week_ordinal},
      {KVFIELD_WEEKDAY, &Rule::weekday},
      {KVFIELD_WEEKDAY_MONTH, &Rule::weekday_month},
      {KVFIELD_MOVE_TO_NEXT_TRADING_DAY, &Rule::move_to_next_trading_day},
  }};
  std::array<RuleColumn, numbers.size()> columns{};
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const schedule::RuleField& field = schedule::rule_fields[i];
    columns[i] = {numbers[i].first, field.name, numbers[i].second, field.least, field.greatest};
  }
  return columns;
}

/// The numbers of a rule in the order of the rule service's arguments, which is that of `schedule::rule_fields`. Their
/// names and ranges are written there.
inline constexpr auto rule_columns = columns_of_rule_fields();

/// Throws `StoreError` of kind `invalid_value`, naming the field, unless a store may keep this rule.
void refuse_invalid(const Rule& rule);

/// The same for a symbol source setting.
void refuse_invalid(const SymbolSourceSetting& setting);

/// The same for a calendar.
void refuse_invalid(const StoredCalendar& stored);

}  // namespace workbench
