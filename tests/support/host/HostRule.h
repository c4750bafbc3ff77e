#pragma once

#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <variant>

#include "RuleRecord.h"

namespace test_support {

/// One stored expiration rule: its number and its content.
struct HostRule : workbench::Rule {
  HostRule() = default;
  /// The further numbers are those of `workbench::Rule`, in its order; those left out keep their defaults.
  template <class... Numbers>
  HostRule(long number, std::wstring rule_name, Numbers... numbers)
      : Rule{std::move(rule_name), numbers...}, id(number) {}

  long id = 0;

  bool operator==(const HostRule&) const = default;
};

/// Shows a rule in the message of a failed expectation.
void PrintTo(const HostRule& rule, std::ostream* out);

using HostSetting = workbench::SymbolSourceSetting;

/// The value of one field of a row: none, a number or a text.
using HostValue = std::variant<std::monostate, long, std::wstring>;

/// A row by field identifiers.
using HostRow = std::map<long, HostValue>;

/// The row of a stored rule.
HostRow row_of(const HostRule& rule);

}  // namespace test_support
