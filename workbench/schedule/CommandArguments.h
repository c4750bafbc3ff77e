#pragma once

#include <optional>
#include <span>
#include <string>

#include "Mistakes.h"
#include "RuleFiles.h"
#include "RuleFinder.h"

namespace workbench::schedule {

/// What a command about dates, or about what a store holds, is to do. Texts are UTF-8.
struct CommandArguments {
  enum class Action {
    schedule,
    schedule_all,
    check,
    find_rule,
    import_records,
    export_records,
    list_calendars,
    import_calendar,
    copy_store,  ///< of the caller alone, who has the stores
  };
  enum class Format { table, csv, json, icalendar, html };

  Action action = Action::schedule;
  std::string store{};       ///< the store, or
  std::string rules_file{};  ///< the file of rules
  std::string rule{};        ///< the rule whose dates are wanted
  std::string file{};        ///< the list of dates, what is imported or exported, or the store that a copy becomes
  std::string calendar{};    ///< a name or a file
  std::optional<Month> from{};
  int months = 12;
  bool estimate = false;
  Format format = Format::table;
  std::optional<Against> against{};
  std::optional<std::size_t> limit{};
  std::optional<Day> today{};
  std::optional<RecordKind> what{};  ///< nothing: rules in CSV, everything in JSON
  bool dry_run = false;
  std::string calendar_name{};  ///< what an iCalendar file does not say; `first_day` and `last_day` too
  std::optional<Day> first_day{};
  std::optional<Day> last_day{};

  /// Whether the command may create the store.
  bool creates_store() const { return action == Action::import_records || action == Action::import_calendar; }
};

/// Whether one of these arguments asks for such a command.
bool is_schedule_command(std::span<const std::string> arguments);

/// Reads the arguments that follow the program's name. Returns nothing and sets `mistake` if they are invalid.
std::optional<CommandArguments> parse_command_arguments(std::span<const std::string> arguments, Mistake& mistake);

}  // namespace workbench::schedule
