#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "Csv.h"
#include "RuleFiles.h"

namespace workbench::schedule {

constexpr auto columns_of_rule_fields() {
  std::array<std::string_view, 1 + rule_fields.size()> names{"RuleName"};
  for (std::size_t i = 0; i < rule_fields.size(); ++i) names[i + 1] = rule_fields[i].name;
  return names;
}

/// The columns of rules in files: the name, then every field of `rule_fields`.
inline constexpr auto rule_columns = columns_of_rule_fields();

/// The columns of settings in files.
inline constexpr std::array<std::string_view, 5> setting_columns{"SettingName", "RuleName", "Calendar", "Months",
                                                                 "LastTradingDay"};

/// The rule in a record with the fields of `rule_columns`; adds mistakes if there is none.
std::optional<NamedRule> try_read_rule(const CsvRecord& record, std::vector<Mistake>& mistakes);

/// The setting in a record with the fields of `setting_columns`; adds mistakes if there is none.
std::optional<NamedSetting> try_read_setting(const CsvRecord& record, std::vector<Mistake>& mistakes);

/// The fields of a rule and a setting in the order of their columns.
std::vector<std::string> record_of(const NamedRule& rule);
std::vector<std::string> record_of(const NamedSetting& setting);

}  // namespace workbench::schedule
