#pragma once

#include <iosfwd>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "HostCalls.h"

namespace test_support {

/// One stored expiration rule. A rule without a name has a null text in its row.
struct HostRule {
  long id = 0;
  std::optional<std::wstring> name;
  long roll_offset = 0;
  long day_type = 0;
  long day_mode = 0;
  long day_of_month = 1;
  long day_month = 1;
  long week_ordinal = 1;
  long weekday = 1;
  long weekday_month = 1;
  long move_to_next_trading_day = 0;

  friend bool operator==(const HostRule&, const HostRule&) = default;
};

/// Shows a rule in the message of a failed expectation.
void PrintTo(const HostRule& rule, std::ostream* out);

/// One symbol source setting: its own name and the name of the rule that it uses.
struct HostSetting {
  std::optional<std::wstring> name;
  std::optional<std::wstring> rule_name;
};

/// The value of one field of a row: nothing yet, a number or a text.
using HostValue = std::variant<std::monostate, long, std::wstring>;

/// A row by field identifiers.
using HostRow = std::map<long, HostValue>;

/// What the fake host knows of each of its living objects.
class LivingObject {
 public:
  virtual std::string description() const = 0;

 protected:
  ~LivingObject() = default;
};

/// What the objects of one fake host share.
struct HostState {
  HostCalls calls;
  bool record_queries = false;
  std::vector<HostRule> rules;
  std::vector<HostSetting> settings;
  HostRow odd_values;  ///< what these fields hold instead in every row that a service loads
  HostRow new_row;     ///< what the host itself puts into a row that is appended to a table
  std::set<std::wstring> submenus;
  std::map<long, IDispatch*> commands;  ///< whom each command id calls; not referenced
  std::set<const LivingObject*> living;

  /// Gives out the next command id.
  long new_command(IDispatch* target) {
    const long id = first_command_id + static_cast<long>(commands.size());
    commands[id] = target;
    return id;
  }

  static constexpr long first_command_id = 501;
};

}  // namespace test_support
