#pragma once

#include <string>
#include <vector>

#include "Commands.h"

namespace workbench::schedule {

/// Ends a command early.
struct CommandFailure {
  ExitCode exit_code;
};

/// What the commands share: their input, and the output written so far.
class CommandContext {
 public:
  CommandContext(const CommandContext&) = delete;
  CommandContext& operator=(const CommandContext&) = delete;

 protected:
  CommandContext(const CommandArguments& arguments, const CommandInput& input) : arguments_(arguments), input_(input) {}
  ~CommandContext() = default;

  /// The output of the command `body`.
  template <class Body>
  CommandOutput run(const Body& body) {
    try {
      body();
    } catch (const CommandFailure& failure) {
      drop_results(failure.exit_code);
    } catch (const Cancelled&) {
      report(MistakeKind::cancelled, {});
      drop_results(not_started);
    }
    return std::move(output_);
  }

  void report(MistakeKind kind, std::vector<std::string> parameters) {
    output_.messages.push_back(describe({0, kind, std::move(parameters)}, input_.language));
  }

  void report(const std::string& file, const std::vector<Mistake>& mistakes) {
    for (const Mistake& mistake : mistakes) output_.messages.push_back(describe(file, mistake, input_.language));
  }

  [[noreturn]] void fail(ExitCode exit_code, MistakeKind kind, std::vector<std::string> parameters) {
    report(kind, std::move(parameters));
    throw CommandFailure{exit_code};
  }

  std::string read(const std::string& path) {
    std::optional<std::string> bytes = input_.read_file(path);
    if (!bytes) fail(unusable_file, MistakeKind::unreadable_file, {path});
    return std::move(*bytes);
  }

  /// The progress of a part that leads from `first` to `last` hundredths of the command.
  Progress part(std::size_t first, std::size_t last) const { return part_of(input_.progress, first, last); }

  const CommandArguments& arguments_;
  const CommandInput& input_;
  CommandOutput output_;

 private:
  void drop_results(ExitCode exit_code) {
    output_.data.clear();
    output_.file.reset();
    output_.change.reset();
    output_.exit_code = exit_code;
  }
};

/// The commands about what a store holds: import, export and calendars.
CommandOutput run_store_command(const CommandArguments& arguments, const CommandInput& input);

}  // namespace workbench::schedule
