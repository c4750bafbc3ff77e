#pragma once

#include <string>
#include <vector>

#include "RuleRecord.h"

namespace workbench {

/// The rules as lines of tab-separated values under a line of field names, with texts in their escaped form.
std::vector<std::wstring> rules_as_lines(const std::vector<StoredRule>& rules);

/// The settings in the same form.
std::vector<std::wstring> settings_as_lines(const std::vector<SymbolSourceSetting>& settings);

}  // namespace workbench
