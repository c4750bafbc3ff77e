#include "ConsoleCommand.h"

#include "Console.h"
#include "Files.h"
#include "FirstContent.h"
#include "MemoryRuleStore.h"
#include "PasswordPrompt.h"
#include "ScheduleConversion.h"
#include "ScheduleRecords.h"
#include "ShippedUpdate.h"
#include "StoreLocation.h"
#include "StoreMessages.h"
#include "TextEncoding.h"
#include "TextTable.h"
#include "UiLanguage.h"

namespace workbench {

namespace {

using schedule::CommandArguments;
using schedule::MistakeKind;

std::vector<std::string> utf8(std::span<const std::wstring> arguments) {
  std::vector<std::string> result;
  for (const std::wstring& argument : arguments) result.push_back(base::to_utf8(argument));
  return result;
}

void write_message(const std::string& message) { write_error(base::from_utf8(message) + L"\n"); }

void report_error(MistakeKind kind, std::vector<std::string> parameters) {
  write_message(describe({0, kind, std::move(parameters)}, chosen_language()));
}

/// The store of a command. One that is still to be created is in memory until the command changes it, so that a command
/// that fails leaves nothing behind, and the store begins with the change.
class CommandStore {
 public:
  CommandStore(const CommandArguments& arguments, const schedule::Progress& progress)
      : location_(find_store(base::from_utf8(arguments.store))) {
    try {
      store_ = location_->open({.first_content = first_content(),
                                .may_create = false,
                                .ask_password = &ask_at_console,
                                .progress = progress});
    } catch (const StoreError& error) {
      if (error.kind() != StoreErrorKind::missing || !arguments.creates_store()) throw;
      is_new_ = true;
      store_ = std::make_unique<MemoryRuleStore>();
      store_->replace_content(first_content());
    }
  }

  RuleStore& store() { return *store_; }
  bool is_new() const { return is_new_; }

  void change(const schedule::WantedChange& wanted, const schedule::Progress& progress) {
    change(*store_, wanted, is_new_ ? schedule::part_of(progress, 0, 20) : progress);
    if (is_new_) create(wanted, schedule::part_of(progress, 20, 100));
  }

 private:
  void create(const schedule::WantedChange& wanted, const schedule::Progress& progress) {
    const auto created =
        location_->open({.first_content = content_of(*store_), .ask_password = &ask_at_console, .progress = progress});
    // Another program may have created the store meanwhile.
    if (content_of(*created) != content_of(*store_)) change(*created, wanted, progress);
  }

  static void change(RuleStore& store, const schedule::WantedChange& wanted, const schedule::Progress& progress) {
    if (wanted.calendar) return store.replace_calendars({{*wanted.calendar, schedule::shipped_calendars_version}});
    StoreImport records;
    for (const schedule::NamedRule& rule : wanted.rules) records.rules.push_back(from_named(rule));
    if (wanted.settings) {
      records.settings.emplace();
      for (const schedule::NamedSetting& setting : *wanted.settings) records.settings->push_back(from_named(setting));
    }
    store.import_records(records, progress);
  }

  static StoreContent content_of(RuleStore& store) {
    StoreContent content{{}, {}, store.load_calendars()};
    for (const StoredRule& stored : store.load_rules()) content.rules.push_back(stored.rule);
    for (const StoredSetting& stored : store.load_settings()) content.settings.push_back(stored.setting);
    return content;
  }

  std::unique_ptr<StoreLocation> location_;
  std::unique_ptr<RuleStore> store_;
  bool is_new_ = false;
};

/// One command with the files, the store and the console of this process.
class ConsoleCommand {
 public:
  explicit ConsoleCommand(const CommandArguments& arguments) : arguments_(arguments) {}

  schedule::ExitCode run() {
    try {
      if (arguments_.action == CommandArguments::Action::copy_store) return copy_store();
      if (!arguments_.store.empty()) {
        store_.emplace(arguments_, progress_.part(0, 10));
        store_->store().set_progress(progress_.same());
      }
      schedule::CommandOutput output = run_command(arguments_, input());
      // What changes is shown first. If it cannot be, nothing is changed.
      const schedule::ExitCode exit_code = write(output);
      if (output.change && exit_code != schedule::unusable_file)
        store_->change(*output.change, progress_.part(end_of_command, 100));
      return exit_code;
    } catch (const StoreError& error) {
      write_error(store_message(error) + L"\n");
      return schedule::unusable_file;
    } catch (const StoreLocationError& error) {
      write_error(error.message + L"\n");
      return schedule::unusable_file;
    } catch (const schedule::Cancelled&) {
      report_error(MistakeKind::cancelled, {});
      return schedule::not_started;
    }
  }

 private:
  schedule::ExitCode copy_store() {
    const std::unique_ptr<RuleStore> source = find_store(base::from_utf8(arguments_.store))
                                                  ->open({.first_content = first_content(),
                                                          .may_create = false,
                                                          .ask_password = &ask_at_console,
                                                          .progress = progress_.part(0, begin_of_command)});
    source->set_progress(progress_.same());
    const StoreCopy copy = source->copy();
    const std::unique_ptr<StoreLocation> target = find_store(base::from_utf8(arguments_.file));
    refuse_present(*target, copy);
    const schedule::TextTable counts{{"what", "count"},
                                     {"rule", std::to_string(copy.rules.size())},
                                     {"setting", std::to_string(copy.settings.size())},
                                     {"calendar", std::to_string(copy.calendars.size())},
                                     {"change", std::to_string(copy.changes.size())}};
    schedule::CommandOutput output{.data = schedule::csv_text(counts)};
    if (arguments_.dry_run)
      output.messages.push_back(describe({0, MistakeKind::nothing_imported, {}}, chosen_language()));
    else
      output.change.emplace();
    const schedule::ExitCode exit_code = write(output);
    if (exit_code == schedule::done && !arguments_.dry_run)
      target->open(
          {.copied = &copy, .ask_password = &ask_at_console, .progress = progress_.part(begin_of_command, 100)});
    return exit_code;
  }

  /// Opens a store that must not be there, which asks for its password and finds what keeps it from being opened.
  static void refuse_present(StoreLocation& target, const StoreCopy& copy) {
    try {
      target.open({.copied = &copy, .may_create = false, .ask_password = &ask_at_console});
    } catch (const StoreError& error) {
      if (error.kind() != StoreErrorKind::missing) throw;
    }
  }

  schedule::CommandInput input() {
    schedule::CommandInput input;
    input.read_file = [this](const std::string& path) {
      return try_read_file(base::from_utf8(path), progress_.part(10, begin_of_command));
    };
    if (store_) {
      for (const schedule::Calendar& calendar : newer_calendars(store_->store().load_calendars()))
        report_error(MistakeKind::older_calendar, {calendar.name});
      NamedRecords records = load_named(store_->store());
      input.rules = std::move(records.rules);
      input.settings = std::move(records.settings);
      input.calendars = std::move(records.calendars);
      input.store_is_new = store_->is_new();
    } else {
      input.calendars = schedule::shipped_calendars();
    }
    input.today = local_today();
    input.language = chosen_language();
    input.progress = progress_.part(begin_of_command, end_of_command);
    return input;
  }

  schedule::ExitCode write(const schedule::CommandOutput& output) {
    // Lines of messages are their own progress.
    for (const std::string& message : output.messages) {
      if (ConsoleProgress::is_cancelled()) throw schedule::Cancelled();
      write_message(message);
    }
    if (output.file &&
        !try_write_file(base::from_utf8(arguments_.file), *output.file, progress_.part(end_of_command, 100))) {
      report_error(MistakeKind::file_not_written, {arguments_.file});
      return schedule::unusable_file;
    }
    if (!output.data.empty() && !write_output_utf8(output.data, progress_.output_part(end_of_command, 100))) {
      if (ConsoleProgress::is_cancelled()) throw schedule::Cancelled();
      report_error(MistakeKind::output_not_written, {});
      if (output.change) report_error(MistakeKind::nothing_imported, {});
      return schedule::unusable_file;
    }
    return output.exit_code;
  }

  // In hundredths. The store is opened and files are read before, and what changes is written afterwards.
  static constexpr std::size_t begin_of_command = 20;
  static constexpr std::size_t end_of_command = 60;

  const CommandArguments& arguments_;
  ConsoleProgress progress_;
  std::optional<CommandStore> store_;  // calls the progress
};

}  // namespace

bool is_console_command(std::span<const std::wstring> arguments) {
  return schedule::is_schedule_command(utf8(arguments));
}

schedule::ExitCode run_console_command(std::span<const std::wstring> arguments) {
  schedule::Mistake mistake;
  const std::optional<CommandArguments> parsed = schedule::parse_command_arguments(utf8(arguments), mistake);
  if (!parsed) {
    for (std::string& argument : mistake.parameters)
      argument = base::to_utf8(printable_argument(base::from_utf8(argument), arguments));
    write_message(describe(mistake, chosen_language()));
    return schedule::wrong_arguments;
  }
  return ConsoleCommand(*parsed).run();
}

}  // namespace workbench
