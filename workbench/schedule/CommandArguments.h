#pragma once

#include <optional>
#include <span>
#include <string>

#include "Mistakes.h"
#include "RuleFinder.h"

namespace workbench::schedule {

/// What a command about dates is to do. Texts are UTF-8.
struct CommandArguments {
  enum class Action { schedule, schedule_all, check, find_rule };
  enum class Format { table, csv, json, icalendar, html };

  Action action = Action::schedule;
  std::string store{};       ///< the store, or
  std::string rules_file{};  ///< the file of rules
  std::string rule{};        ///< the rule whose dates are wanted
  std::string dates_file{};  ///< the list of dates
  std::string calendar{};    ///< a name or a file
  std::optional<Month> from{};
  int months = 12;
  bool estimate = false;
  Format format = Format::table;
  std::optional<Against> against{};
  std::optional<std::size_t> limit{};
  std::optional<Day> today{};
};

/// Whether one of these arguments asks for such a command.
bool is_schedule_command(std::span<const std::string> arguments);

/// Reads the arguments that follow the program's name. Returns nothing and sets `mistake` if they do not make sense.
std::optional<CommandArguments> parse_command_arguments(std::span<const std::string> arguments, Mistake& mistake);

}  // namespace workbench::schedule
