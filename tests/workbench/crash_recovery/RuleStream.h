#pragma once

#include <vector>

#include "RuleRecord.h"

/// One change of a store's rules.
struct StreamChange {
  enum class Kind { add, update, remove };

  Kind kind = Kind::add;
  workbench::StoredRule old{};  ///< the rule that is updated or removed
  workbench::Rule rule{};       ///< the rule that is added, or what the old one becomes
};

/// The `number`-th of an endless stream of changes. It follows from the number and from the numbers and names of the
/// rules that there are, so two stores with the same rules stay the same. Rules that are in use may be removed too,
/// which a store refuses.
StreamChange choose_change(const std::vector<workbench::StoredRule>& rules, unsigned number);

/// The environment variable with the number of the first change of `rule_stream.dll`.
inline constexpr wchar_t first_change_variable[] = L"ZD_FIRST_CHANGE";
