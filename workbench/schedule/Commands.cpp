#include "Commands.h"

#include <algorithm>
#include <map>

#include "CalendarFile.h"
#include "CommandContext.h"
#include "DateList.h"
#include "FinderOutput.h"
#include "ScheduleOutput.h"
#include "YearPage.h"

namespace workbench::schedule {

namespace {

using Action = CommandArguments::Action;
using Format = CommandArguments::Format;

/// The commands that work out dates.
class DateCommand : private CommandContext {
 public:
  DateCommand(const CommandArguments& arguments, const CommandInput& input)
      : CommandContext(arguments, input), today_(arguments.today.value_or(input.today)) {}

  CommandOutput run() {
    return CommandContext::run([this] {
      if (arguments_.action == Action::find_rule) return find();
      load_rules();
      if (arguments_.action == Action::check) return check();
      schedule();
    });
  }

 private:
  void load_rules() {
    rules_ = input_.rules;
    settings_ = input_.settings;
    if (arguments_.rules_file.empty()) return;
    settings_.clear();
    rules_.clear();
    const RuleFile file = read_rules_csv(read(arguments_.rules_file));
    tell(arguments_.rules_file, file.mistakes);
    if (!file.mistakes.empty()) throw CommandFailure{unusable_file};
    std::map<std::string_view, std::size_t> lines;
    for (const Lined<NamedRule>& lined : *file.rules) {
      if (const auto [first, is_new] = lines.emplace(lined.item.name, lined.line); !is_new) {
        tell(arguments_.rules_file,
             {{lined.line, MistakeKind::repeated_rule, {lined.item.name, std::to_string(first->second)}}});
        throw CommandFailure{unusable_file};
      }
      rules_.push_back(lined.item);
    }
  }

  const NamedRule* find_rule(std::string_view name) const {
    const auto found = std::ranges::find(rules_, name, &NamedRule::name);
    return found == rules_.end() ? nullptr : &*found;
  }

  /// The open days of the calendar with this name or in this file.
  const TradingDays& open_days(const std::string& calendar) {
    const auto known = open_days_.find(calendar);
    if (known != open_days_.end()) return known->second;
    if (is_file_name(calendar)) {
      const CalendarReading reading = read_calendar(read(calendar));
      tell(calendar, reading.mistakes);
      if (!reading.calendar) throw CommandFailure{unusable_file};
      return open_days_.emplace(calendar, trading_days(*reading.calendar)).first->second;
    }
    const auto found = std::ranges::find(input_.calendars, calendar, &Calendar::name);
    if (found == input_.calendars.end()) fail(wrong_arguments, MistakeKind::unknown_calendar, {calendar});
    return open_days_.emplace(calendar, trading_days(*found)).first->second;
  }

  /// The settings that use the rule and have a calendar: their own, or the one that the command names. A rule without
  /// setting has a null one.
  std::vector<const NamedSetting*> users_of(const NamedRule& rule) {
    std::vector<const NamedSetting*> users;
    for (const NamedSetting& setting : settings_) {
      if (setting.rule == rule.name && !calendar_of(&setting).empty()) users.push_back(&setting);
    }
    if (!users.empty()) return users;
    if (arguments_.calendar.empty()) fail(wrong_arguments, MistakeKind::calendar_needed, {rule.name});
    return {nullptr};
  }

  /// The calendar that the command names, else that of the setting.
  const std::string& calendar_of(const NamedSetting* setting) const {
    return arguments_.calendar.empty() && setting ? setting->calendar : arguments_.calendar;
  }

  void schedule() {
    const std::chrono::year_month_day today{today_};
    const Month from = arguments_.from.value_or(Month{today.year(), today.month()});
    contracts_ = {from, from + std::chrono::months{arguments_.months - 1}};
    // A page shows a year, with all that is to be done in it.
    if (arguments_.format == Format::html) {
      year_ = from.year();
      contracts_ = contracts_around(Day{from.year() / 1 / 1}, Day{from.year() / 12 / 31});
    }
    std::vector<ScheduleRow> rows;
    if (arguments_.action == Action::schedule) {
      const NamedRule* rule = find_rule(arguments_.rule);
      if (!rule) fail(wrong_arguments, MistakeKind::unknown_rule, {arguments_.rule});
      add_rows(*rule, rows);
    } else {
      for (std::size_t i = 0; i < rules_.size(); ++i) {
        advance(i, rules_.size());
        add_rows(rules_[i], rows);
      }
    }
    write(rows);
  }

  void add_rows(const NamedRule& rule, std::vector<ScheduleRow>& rows) {
    // A calendar that the command names gives the rule its rows by itself.
    const std::vector<const NamedSetting*> users =
        arguments_.calendar.empty() ? users_of(rule) : std::vector<const NamedSetting*>{nullptr};
    for (const NamedSetting& setting : settings_) {
      if (setting.rule == rule.name && calendar_of(&setting).empty())
        tell(MistakeKind::setting_without_calendar, {setting.name, rule.name});
    }
    for (const NamedSetting* setting : users) {
      const std::string& name = calendar_of(setting);
      const TradingDays& calendar = open_days(name);
      for (Month contract = contracts_.first; contract <= contracts_.last; contract += std::chrono::months{1}) {
        if (setting && !is_delivery_month(contract, setting->months)) continue;
        const ContractDates dates =
            contract_dates(rule.numbers, contract, calendar, {.estimates = arguments_.estimate});
        if (year_ && !lies_in_year(dates, *year_)) continue;
        rows.push_back({rule.name, setting ? setting->name : std::string(), dates, name});
      }
    }
  }

  void write(const std::vector<ScheduleRow>& rows) {
    switch (arguments_.format) {
      case Format::table:
        output_.data = schedule_table(rows);
        break;
      case Format::csv:
        output_.data = schedule_csv(rows);
        break;
      case Format::json:
        output_.data = schedule_json(rows);
        break;
      case Format::icalendar:
        output_.data = schedule_icalendar(rows, today_, input_.language);
        break;
      case Format::html: {
        const TradingDays* calendar = open_days_.size() == 1 ? &open_days_.begin()->second : nullptr;
        output_.data = year_page(rows, *year_, calendar, input_.language);
      }
    }
  }

  void check() {
    const DateList list = read_rule_date_list(read(arguments_.file));
    begin_list(list);
    std::vector<CheckRow> rows;
    for (std::size_t i = 0; i < list.dates.size(); ++i) {
      advance(i, list.dates.size());
      const ListedDate& listed = list.dates[i];
      const NamedRule* rule = find_rule(listed.rule);
      if (!rule) {
        tell(arguments_.file, {{listed.line, MistakeKind::unknown_rule, {listed.rule}}});
        output_.exit_code = with_differences;
        continue;
      }
      std::optional<DateCheck> nearest;
      for (const NamedSetting* setting : users_of(*rule)) {
        const Against day_of_setting = setting && setting->last_day_is_expiration ? Against::expiration : Against::roll;
        DateCheck check = check_date(rule->numbers, listed.known, open_days(calendar_of(setting)),
                                     arguments_.against.value_or(day_of_setting));
        if (!nearest || is_nearer(check, *nearest)) nearest = std::move(check);
      }
      rows.push_back({rule->name, *std::move(nearest)});
      if (!rows.back().check.is_match()) output_.exit_code = with_differences;
    }
    output_.data = check_csv(rows);
  }

  /// Tells what is wrong with a list of dates. A list without a single date cannot be used.
  void begin_list(const DateList& list) {
    tell(arguments_.file, list.mistakes);
    for (const std::string& column : list.ignored_columns) tell(MistakeKind::ignored_column, {arguments_.file, column});
    if (list.mistakes.empty()) return;
    if (list.dates.empty()) throw CommandFailure{unusable_file};
    output_.exit_code = with_differences;
  }

  void find() {
    const DateList list = read_date_list(read(arguments_.file));
    begin_list(list);
    const TradingDays& calendar = open_days(arguments_.calendar);
    std::vector<KnownDate> dates;
    for (const ListedDate& listed : list.dates) {
      dates.push_back(listed.known);
      const std::vector<std::string> day{to_text(listed.known.date)};
      if (!calendar.covers(listed.known.date)) {
        tell(arguments_.file, {{listed.line, MistakeKind::date_beyond_calendar, day}});
      } else if (!calendar.is_open(listed.known.date)) {
        tell(arguments_.file, {{listed.line, MistakeKind::closed_date, day}});
      }
    }
    const FoundRules found = find_rules(dates, calendar, arguments_.against.value_or(Against::roll), arguments_.limit,
                                        [&](std::size_t checked) { advance(checked, dates.size()); });
    const std::string counted = std::to_string(found.counted);
    if (found.agreeing == 0) {
      if (found.counted == 0) {
        tell(MistakeKind::no_date_counts, {});
      } else {
        tell(MistakeKind::no_rule_found, {counted});
      }
      output_.exit_code = with_differences;
    } else {
      tell(found.agreeing == 1 ? MistakeKind::one_rule_found : MistakeKind::rules_found,
           {counted, std::to_string(found.agreeing)});
    }
    output_.data = arguments_.format == Format::csv    ? found_csv(found)
                   : arguments_.format == Format::json ? found_json(found)
                                                       : found_table(found);
  }

  Day today_;
  ContractRange contracts_;
  std::optional<std::chrono::year> year_;  ///< of which alone the dates are wanted
  std::vector<NamedRule> rules_;
  std::vector<NamedSetting> settings_;
  std::map<std::string, TradingDays> open_days_;
};

}  // namespace

CommandOutput run_command(const CommandArguments& arguments, const CommandInput& input) {
  switch (arguments.action) {
    case Action::schedule:
    case Action::schedule_all:
    case Action::check:
    case Action::find_rule:
      return DateCommand(arguments, input).run();
    default:
      return run_store_command(arguments, input);
  }
}

}  // namespace workbench::schedule
