#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Calendar.h"
#include "CommandArguments.h"
#include "Progress.h"
#include "RuleFiles.h"

namespace workbench::schedule {

/// How a command ends.
enum ExitCode {
  done = 0,
  with_differences = 1,  ///< differences, refused rows, or no rule found
  wrong_arguments = 2,
  unusable_file = 3,  ///< a store or a file that cannot be used
  not_started = 4,    ///< not started, or cancelled
};

/// What a command works on.
struct CommandInput {
  std::function<std::optional<std::string>(const std::string& path)> read_file;  ///< nothing if it cannot be read
  /// The rules and settings of the store; not asked when the command names a file of rules.
  std::vector<NamedRule> rules{};
  std::vector<NamedSetting> settings{};
  std::vector<Calendar> calendars{};  ///< which a command may name
  bool store_is_new = false;          ///< whether the store is still to be created, with what is given here
  Day today{};
  Language language = Language::english;
  Progress progress{};
};

/// What a command asks to be changed in its store, in one transaction. A new store is created even if nothing changes.
struct WantedChange {
  std::vector<NamedRule> rules{};                       ///< each changes the rule of its name, or is added
  std::optional<std::vector<NamedSetting>> settings{};  ///< replace all settings
  std::optional<Calendar> calendar{};                   ///< replaces the one with its name
};

/// What a command writes: data to the standard output, messages to the error stream, one a line. The caller does what
/// is wanted besides.
struct CommandOutput {
  std::string data{};
  std::vector<std::string> messages{};
  ExitCode exit_code = done;
  std::optional<std::string> file{};  ///< what the file that the command names is to hold
  std::optional<WantedChange> change{};
};

/// Runs a command without changing anything.
CommandOutput run_command(const CommandArguments& arguments, const CommandInput& input);

}  // namespace workbench::schedule
