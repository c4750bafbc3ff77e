#pragma once

#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "Csv.h"
#include "RuleFiles.h"

namespace workbench::schedule {

/// The columns of rules and settings in files.
inline constexpr std::array<std::string_view, 10> rule_columns{
    "RuleName",          rule_fields[0].name, rule_fields[1].name, rule_fields[2].name, rule_fields[3].name,
    rule_fields[4].name, rule_fields[5].name, rule_fields[6].name, rule_fields[7].name, rule_fields[8].name};
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
