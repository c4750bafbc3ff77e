#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Mistakes.h"
#include "Progress.h"
#include "RuleNumbers.h"

namespace workbench::schedule {

/// The longest name of a rule or a setting, in UTF-16 code units, and the longest that the editor of rules accepts.
inline constexpr std::size_t longest_stored_name = 255;
inline constexpr std::size_t longest_edited_name = 63;

/// A rule as files have it. Names are UTF-8 that may also hold the three bytes of a lone surrogate.
struct NamedRule {
  std::string name;
  RuleNumbers numbers;

  bool operator==(const NamedRule&) const = default;
};

/// A symbol source setting as files have it.
struct NamedSetting {
  std::string name;
  std::string rule{};                   ///< empty when it uses no rule
  std::string calendar{};               ///< empty when it names none
  std::string months{};                 ///< letters of delivery months, ascending; empty: all
  bool last_day_is_expiration = false;  ///< the contract's last trading day; otherwise it is the roll day

  bool operator==(const NamedSetting&) const = default;
};

/// The kinds of records that files hold.
enum class RecordKind { rules, settings };

/// The records of a file, each with its line. A kind of records that the file does not contain is absent.
template <class Item>
struct Lined {
  std::size_t line = 0;
  Item item;
};
struct RuleFile {
  std::optional<std::vector<Lined<NamedRule>>> rules{};
  std::optional<std::vector<Lined<NamedSetting>>> settings{};
  std::vector<Mistake> mistakes{};
  std::vector<std::string> ignored_columns{};
};

/// Reads rules from CSV: RuleName and the names of `rule_fields`, in any order. Numbers may have any value.
RuleFile read_rules_csv(std::string_view bytes, const Progress& progress = {});

/// Reads settings from CSV: SettingName, RuleName, Calendar, Months and LastTradingDay (roll or expiration), in any
/// order.
RuleFile read_settings_csv(std::string_view bytes, const Progress& progress = {});

/// Reads a JSON object with the arrays rules and settings, or one of them, whose objects have the names of the columns.
/// A lone surrogate is written \uD800.
RuleFile read_rules_json(std::string_view bytes, const Progress& progress = {});

/// The rules as CSV, or nothing if a name holds what UTF-8 cannot; `refused` then is the name.
std::optional<std::string> write_rules_csv(std::span<const NamedRule> rules, std::string& refused,
                                           const Progress& progress = {});
std::optional<std::string> write_settings_csv(std::span<const NamedSetting> settings, std::string& refused,
                                              const Progress& progress = {});

/// The records as JSON, which can hold every name. A kind that is absent is left out.
std::string write_rules_json(std::optional<std::span<const NamedRule>> rules,
                             std::optional<std::span<const NamedSetting>> settings, const Progress& progress = {});

/// The length of a name in UTF-16 code units.
std::size_t utf16_length(std::string_view name);

/// Whether the editor of rules accepts this name: 1 to 63 letters, digits, white-space characters and asterisks of
/// ASCII.
bool is_edited_name(std::string_view name);

}  // namespace workbench::schedule
