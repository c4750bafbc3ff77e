#pragma once

#include <windows.h>

#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "UiLanguage.h"

namespace workbench {

/// What the user asked for at the command line.
struct CommandLine {
  enum class Action { run, print_rules, version, help };

  Action action = Action::run;
  std::wstring store{};            ///< as the user names it; empty: the default store
  std::filesystem::path module{};  ///< empty: the registered module, else the one beside the program
  long shown_rule = 0;             ///< the rule that is opened in the editor after the start; 0: none

  bool operator==(const CommandLine&) const = default;
};

/// Invalid arguments: the id of the message and the argument that it is about.
struct CommandLineError {
  UINT message;
  std::wstring argument;
};

/// Reads the arguments that follow the program's name; where one is given twice, the last counts. Throws
/// `CommandLineError`.
CommandLine parse_command_line(std::span<const std::wstring> arguments);

/// The language that these arguments ask for, even if others are invalid, since the messages about those are in it;
/// nothing if they ask for none.
std::optional<Language> try_find_language(std::span<const std::wstring> arguments);

/// The arguments without `--language` and its value. Throws `CommandLineError` if that is no language.
std::vector<std::wstring> without_language(std::span<const std::wstring> arguments);

/// The arguments of this process that follow the program's name.
std::vector<std::wstring> process_arguments();

}  // namespace workbench
