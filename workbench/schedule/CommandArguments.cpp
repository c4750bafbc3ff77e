#include "CommandArguments.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "Calendar.h"

namespace workbench::schedule {

namespace {

using Action = CommandArguments::Action;
using Format = CommandArguments::Format;

constexpr int most_months = 1200;

/// A command, whether a value follows it, and the options that it takes, joined by spaces.
struct CommandName {
  std::string_view name;
  Action action;
  bool takes_value;
  std::string_view options;

  bool takes(std::string_view option) const {
    std::string_view rest = options;
    while (!rest.empty()) {
      const std::string_view taken = rest.substr(0, rest.find(' '));
      if (taken == option) return true;
      rest.remove_prefix(std::min(rest.size(), taken.size() + 1));
    }
    return false;
  }
};

constexpr std::string_view schedule_options = "--store --rules --calendar --from --months --estimate --format --today";

constexpr std::array<CommandName, 9> commands{
    {{"--schedule", Action::schedule, true, schedule_options},
     {"--schedule-all", Action::schedule_all, false, schedule_options},
     {"--check", Action::check, true, "--store --rules --calendar --against"},
     {"--find-rule", Action::find_rule, true, "--store --calendar --against --limit --format"},
     {"--import", Action::import_records, true, "--store --what --dry-run"},
     {"--export", Action::export_records, true, "--store --what"},
     {"--calendars", Action::list_calendars, false, "--store"},
     {"--import-calendar", Action::import_calendar, true, "--store --name --from --to --dry-run"},
     {"--copy-to", Action::copy_store, true, "--store --dry-run"}}};

const CommandName* find_command(std::string_view name) {
  const auto found = std::ranges::find(commands, name, &CommandName::name);
  return found == commands.end() ? nullptr : &*found;
}

constexpr std::array<std::pair<std::string_view, Format>, 5> formats{{{"table", Format::table},
                                                                      {"csv", Format::csv},
                                                                      {"json", Format::json},
                                                                      {"ics", Format::icalendar},
                                                                      {"html", Format::html}}};

class ArgumentParser {
 public:
  ArgumentParser(std::span<const std::string> arguments, Mistake& mistake) : rest_(arguments), mistake_(mistake) {}

  std::optional<CommandArguments> parse() {
    while (!rest_.empty()) {
      const std::string& option = rest_.front();
      rest_ = rest_.subspan(1);
      if (!read(option)) return std::nullopt;
    }
    return is_complete() ? std::optional(std::move(arguments_)) : std::nullopt;
  }

 private:
  bool refuse(MistakeKind kind, std::vector<std::string> parameters) {
    mistake_ = {0, kind, std::move(parameters)};
    return false;
  }

  bool read(const std::string& option) {
    if (const CommandName* command = find_command(option)) return set_command(*command);
    if (!is_option(option)) return refuse(MistakeKind::unknown_argument, {option});
    if (option == "--estimate" || option == "--dry-run") {
      values_[option] = "";
      return true;
    }
    return take_value(option, values_[option]);
  }

  bool take_value(std::string_view option, std::string& value) {
    if (rest_.empty() || rest_.front().empty() || rest_.front().starts_with("--"))
      return refuse(MistakeKind::missing_value, {std::string(option)});
    value = rest_.front();
    rest_ = rest_.subspan(1);
    return true;
  }

  bool set_command(const CommandName& command) {
    if (command_) return refuse(MistakeKind::second_command, {std::string(command_->name), std::string(command.name)});
    command_ = &command;
    arguments_.action = command.action;
    if (!command.takes_value) return true;
    return take_value(command.name, command.action == Action::schedule ? arguments_.rule : arguments_.file);
  }

  static bool is_option(std::string_view option) {
    return std::ranges::any_of(commands, [&](const CommandName& command) { return command.takes(option); });
  }

  bool set_value(const std::string& option, const std::string& value) {
    if (option == "--store") arguments_.store = value;
    if (option == "--rules") arguments_.rules_file = value;
    if (option == "--calendar") arguments_.calendar = value;
    if (option == "--estimate") arguments_.estimate = true;
    if (option == "--dry-run") arguments_.dry_run = true;
    if (option == "--from" && arguments_.action != Action::import_calendar)
      return (arguments_.from = try_parse_month(value)).has_value();
    if (option == "--from") return (arguments_.first_day = try_parse_day(value)).has_value();
    if (option == "--to") return (arguments_.last_day = try_parse_day(value)).has_value();
    if (option == "--today") return (arguments_.today = try_parse_day(value)).has_value();
    if (option == "--format") return set_format(value);
    if (option == "--against")
      return choose(value, "roll", Against::roll, "expiration", Against::expiration, arguments_.against);
    if (option == "--what")
      return choose(value, "rules", RecordKind::rules, "settings", RecordKind::settings, arguments_.what);
    if (option == "--name") return is_calendar_name(arguments_.calendar_name = value);
    return (option != "--limit" && option != "--months") || set_number(option, value);
  }

  template <class Choice>
  static bool choose(std::string_view value, std::string_view first_name, Choice first, std::string_view second_name,
                     Choice second, std::optional<Choice>& choice) {
    if (value == first_name) choice = first;
    if (value == second_name) choice = second;
    return choice.has_value();
  }

  bool set_number(std::string_view option, std::string_view value) {
    const std::optional<int> number = try_parse_digits(value);
    if (!number || *number < 1) return false;
    if (option == "--limit") {
      arguments_.limit = static_cast<std::size_t>(*number);
      return true;
    }
    arguments_.months = *number;
    return *number <= most_months;
  }

  bool set_format(const std::string& value) {
    const auto found = std::ranges::find(formats, std::string_view(value), &std::pair<std::string_view, Format>::first);
    if (found == formats.end()) return false;
    arguments_.format = found->second;
    const bool page_or_events = arguments_.format == Format::icalendar || arguments_.format == Format::html;
    return arguments_.action != Action::find_rule || !page_or_events;
  }

  bool is_complete() {
    if (!command_) return refuse(MistakeKind::missing_option, {command_names()});
    for (const auto& [option, value] : values_) {
      if (!command_->takes(option))
        return refuse(MistakeKind::unsuitable_option, {option, std::string(command_->name)});
      if (!set_value(option, value)) return refuse(MistakeKind::bad_value, {option, value});
    }
    const bool finds = arguments_.action == Action::find_rule;
    if (finds && arguments_.calendar.empty()) return refuse(MistakeKind::missing_option, {"--calendar"});
    const bool takes_rules = command_->takes("--rules");
    if (!finds && arguments_.store.empty() == (!takes_rules || arguments_.rules_file.empty()))
      return refuse(MistakeKind::missing_option, {takes_rules ? "--store, --rules" : "--store"});
    const bool records = arguments_.action == Action::import_records || arguments_.action == Action::export_records;
    if (records && !has_ending(arguments_.file, ".csv") && !has_ending(arguments_.file, ".json"))
      return refuse(MistakeKind::bad_value, {std::string(command_->name), arguments_.file});
    if (arguments_.first_day && arguments_.last_day && *arguments_.last_day < *arguments_.first_day)
      return refuse(MistakeKind::bad_value, {"--to", to_text(*arguments_.last_day)});
    return true;
  }

  static std::string command_names() {
    std::string names;
    for (const CommandName& command : commands) names.append(names.empty() ? "" : ", ").append(command.name);
    return names;
  }

  std::span<const std::string> rest_;
  Mistake& mistake_;
  CommandArguments arguments_;
  const CommandName* command_ = nullptr;
  std::map<std::string, std::string> values_;  // of the options; the last value counts
};

}  // namespace

bool is_schedule_command(std::span<const std::string> arguments) {
  return std::ranges::any_of(arguments, [](const std::string& argument) { return find_command(argument) != nullptr; });
}

std::optional<CommandArguments> parse_command_arguments(std::span<const std::string> arguments, Mistake& mistake) {
  return ArgumentParser(arguments, mistake).parse();
}

}  // namespace workbench::schedule
