#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Calendar.h"
#include "CommandArguments.h"
#include "RuleFiles.h"

namespace workbench::schedule {

/// How a command ends.
enum ExitCode {
  done = 0,
  with_differences = 1,  ///< differences, refused rows, or no rule found
  wrong_arguments = 2,
  unusable_file = 3,  ///< a store or a file that cannot be used
  not_started = 4,
};

/// What a command works on.
struct CommandInput {
  std::function<std::optional<std::string>(const std::string& path)> read_file;  ///< nothing if it cannot be read
  /// The rules and settings of the store; not asked when the command names a file of rules.
  std::vector<NamedRule> rules{};
  std::vector<NamedSetting> settings{};
  std::vector<Calendar> calendars{};  ///< which a command may name
  Day today{};
  Language language = Language::english;
};

/// What a command writes: data to the standard output, messages to the error stream, one a line.
struct CommandOutput {
  std::string data{};
  std::vector<std::string> messages{};
  ExitCode exit_code = done;
};

CommandOutput run_command(const CommandArguments& arguments, const CommandInput& input);

}  // namespace workbench::schedule
