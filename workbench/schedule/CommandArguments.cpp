#include "CommandArguments.h"

#include <algorithm>
#include <array>
#include <utility>

namespace workbench::schedule {

namespace {

using Action = CommandArguments::Action;
using Format = CommandArguments::Format;

constexpr int most_months = 1200;

constexpr std::array<std::pair<std::string_view, Action>, 4> actions{{{"--schedule", Action::schedule},
                                                                      {"--schedule-all", Action::schedule_all},
                                                                      {"--check", Action::check},
                                                                      {"--find-rule", Action::find_rule}}};

constexpr std::array<std::pair<std::string_view, Format>, 5> formats{{{"table", Format::table},
                                                                      {"csv", Format::csv},
                                                                      {"json", Format::json},
                                                                      {"ics", Format::icalendar},
                                                                      {"html", Format::html}}};

template <class Value, std::size_t count>
std::optional<Value> find(const std::array<std::pair<std::string_view, Value>, count>& table, std::string_view name) {
  for (const auto& [key, value] : table) {
    if (key == name) return value;
  }
  return std::nullopt;
}

class ArgumentParser {
 public:
  ArgumentParser(std::span<const std::string> arguments, Mistake& mistake) : rest_(arguments), mistake_(mistake) {}

  std::optional<CommandArguments> parse() {
    while (!rest_.empty()) {
      const std::string& option = rest_.front();
      rest_ = rest_.subspan(1);
      if (!read(option)) return std::nullopt;
    }
    return is_complete() ? std::optional(std::move(command_)) : std::nullopt;
  }

 private:
  bool refuse(MistakeKind kind, std::vector<std::string> parameters) {
    mistake_ = {0, kind, std::move(parameters)};
    return false;
  }

  bool read(const std::string& option) {
    if (const std::optional<Action> action = find(actions, option)) return set_action(option, *action);
    if (option == "--estimate") return command_.estimate = true;
    if (!is_option_with_value(option)) return refuse(MistakeKind::unknown_argument, {option});
    if (rest_.empty() || rest_.front().empty() || rest_.front().starts_with("--"))
      return refuse(MistakeKind::missing_value, {option});
    const std::string value = rest_.front();
    rest_ = rest_.subspan(1);
    return set_value(option, value) || refuse(MistakeKind::bad_value, {option, value});
  }

  bool set_action(const std::string& option, Action action) {
    if (action_) return refuse(MistakeKind::second_command, {*action_, option});
    action_ = option;
    command_.action = action;
    if (action == Action::schedule_all) return true;
    if (rest_.empty() || rest_.front().empty() || rest_.front().starts_with("--"))
      return refuse(MistakeKind::missing_value, {option});
    (action == Action::schedule ? command_.rule : command_.dates_file) = rest_.front();
    rest_ = rest_.subspan(1);
    return true;
  }

  static bool is_option_with_value(std::string_view option) {
    constexpr std::array<std::string_view, 9> options{"--store",  "--rules",   "--calendar", "--from", "--months",
                                                      "--format", "--against", "--limit",    "--today"};
    return std::ranges::find(options, option) != options.end();
  }

  bool set_value(std::string_view option, const std::string& value) {
    if (option == "--store") return !(command_.store = value).empty();
    if (option == "--rules") return !(command_.rules_file = value).empty();
    if (option == "--calendar") return !(command_.calendar = value).empty();
    if (option == "--from") return (command_.from = try_parse_month(value)).has_value();
    if (option == "--today") return (command_.today = try_parse_day(value)).has_value();
    if (option == "--format") return set_format(value);
    if (option == "--against") {
      if (value == "roll") command_.against = Against::roll;
      if (value == "expiration") command_.against = Against::expiration;
      return command_.against.has_value();
    }
    const std::optional<int> number = try_parse_digits(value);
    if (!number || *number < 1) return false;
    if (option == "--limit") {
      command_.limit = static_cast<std::size_t>(*number);
      return true;
    }
    command_.months = *number;
    return *number <= most_months;
  }

  bool set_format(const std::string& value) {
    const std::optional<Format> format = find(formats, value);
    if (format) command_.format = *format;
    return format.has_value();
  }

  bool is_complete() {
    if (!action_) return refuse(MistakeKind::missing_option, {"--schedule, --schedule-all, --check, --find-rule"});
    const bool finds = command_.action == Action::find_rule;
    if (finds && command_.calendar.empty()) return refuse(MistakeKind::missing_option, {"--calendar"});
    if (!finds && command_.store.empty() == command_.rules_file.empty())
      return refuse(MistakeKind::missing_option, {"--store, --rules"});
    if (finds && (command_.format == Format::icalendar || command_.format == Format::html))
      return refuse(MistakeKind::bad_value, {"--format", command_.format == Format::html ? "html" : "ics"});
    return true;
  }

  std::span<const std::string> rest_;
  Mistake& mistake_;
  CommandArguments command_;
  std::optional<std::string> action_;
};

}  // namespace

bool is_schedule_command(std::span<const std::string> arguments) {
  return std::ranges::any_of(arguments,
                             [](const std::string& argument) { return find(actions, argument).has_value(); });
}

std::optional<CommandArguments> parse_command_arguments(std::span<const std::string> arguments, Mistake& mistake) {
  return ArgumentParser(arguments, mistake).parse();
}

}  // namespace workbench::schedule
