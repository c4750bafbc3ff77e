#pragma once

#include "RuleFiles.h"
#include "RuleStore.h"

namespace workbench {

// The store's records as the schedule library has them, and back. Names are the same code units in both: those of the
// library are UTF-8 that may also hold the three bytes of a lone surrogate.

std::string to_schedule_text(std::wstring_view text);
std::wstring from_schedule_text(std::string_view bytes);

schedule::RuleNumbers to_rule_numbers(const Rule& rule);
schedule::NamedRule to_named(const Rule& rule);
schedule::NamedSetting to_named(const SymbolSourceSetting& setting);

/// What a store holds.
struct NamedRecords {
  std::vector<schedule::NamedRule> rules;
  std::vector<schedule::NamedSetting> settings;
  std::vector<schedule::Calendar> calendars;
};
NamedRecords load_named(RuleStore& store);

Rule from_named(const schedule::NamedRule& named);
SymbolSourceSetting from_named(const schedule::NamedSetting& setting);

}  // namespace workbench
