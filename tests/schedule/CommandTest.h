#pragma once

#include <map>

#include "Commands.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

/// Commands whose files are in `files_`.
class CommandTest : public testing::Test {
 protected:
  CommandTest() {
    input_.read_file = [this](const std::string& path) -> std::optional<std::string> {
      const auto found = files_.find(path);
      return found == files_.end() ? std::nullopt : std::optional(found->second);
    };
  }

  CommandOutput run(const std::vector<std::string>& arguments) {
    Mistake mistake;
    const std::optional<CommandArguments> parsed = parse_command_arguments(arguments, mistake);
    if (!parsed) return {{}, {describe(mistake)}, wrong_arguments};
    return run_command(*parsed, input_);
  }

  std::map<std::string, std::string> files_;
  CommandInput input_;
};

}  // namespace workbench::schedule
