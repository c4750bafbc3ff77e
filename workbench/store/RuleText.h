#pragma once

#include <string>
#include <vector>

#include "RuleRecord.h"

namespace workbench {

/// The rules as lines of tab-separated values under a line of field names. A backslash, and what would break a line or
/// cannot be written as UTF-8 (control characters, lone surrogates), stands as \\ or \uXXXX.
std::vector<std::wstring> rules_as_lines(const std::vector<StoredRule>& rules);

/// The settings in the same form.
std::vector<std::wstring> settings_as_lines(const std::vector<SymbolSourceSetting>& settings);

}  // namespace workbench
