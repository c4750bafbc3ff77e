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
      index_rules();
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
    const RuleFile file = read_rules_csv(read(arguments_.rules_file), part(0, 10));
    report(arguments_.rules_file, file.mistakes);
    if (!file.mistakes.empty()) throw CommandFailure{unusable_file};
    std::map<std::string_view, std::size_t> lines;
    for (const Lined<NamedRule>& lined : *file.rules) {
      if (const auto [first, is_new] = lines.emplace(lined.item.name, lined.line); !is_new) {
        report(arguments_.rules_file,
               {{lined.line, MistakeKind::repeated_rule, {lined.item.name, std::to_string(first->second)}}});
        throw CommandFailure{unusable_file};
      }
      rules_.push_back(lined.item);
    }
  }

  void index_rules() {
    for (const NamedRule& rule : rules_) rules_by_name_.emplace(rule.name, &rule);
    for (const NamedSetting& setting : settings_) settings_by_rule_.emplace(setting.rule, &setting);
  }

  const NamedRule* find_rule(std::string_view name) const {
    const auto found = rules_by_name_.find(name);
    return found == rules_by_name_.end() ? nullptr : found->second;
  }

  bool has_calendar(const std::string& name) const {
    return std::ranges::find(input_.calendars, name, &Calendar::name) != input_.calendars.end();
  }

  /// The open days of the calendar with this name or in this file.
  const TradingDays& open_days(const std::string& calendar) {
    const auto known = open_days_.find(calendar);
    if (known != open_days_.end()) return known->second;
    if (is_file_name(calendar)) {
      const CalendarReading reading = read_calendar(read(calendar), part(10, 10));
      report(calendar, reading.mistakes);
      if (!reading.calendar) throw CommandFailure{unusable_file};
      return open_days_.emplace(calendar, trading_days(*reading.calendar)).first->second;
    }
    const auto found = std::ranges::find(input_.calendars, calendar, &Calendar::name);
    if (found == input_.calendars.end()) fail(wrong_arguments, MistakeKind::unknown_calendar, {calendar});
    return open_days_.emplace(calendar, trading_days(*found)).first->second;
  }

  /// What gives a rule its dates: a setting, if one is meant, with the calendar that counts for it.
  struct User {
    const NamedSetting* setting;
    const std::string* calendar;
  };

  struct Users {
    std::vector<User> users{};
    /// Why there are none: the settings name no calendar, or only some that do not exist.
    MistakeKind reason = MistakeKind::calendar_needed;
  };

  /// Those of the rule's settings that have a calendar: the one that the command names, or their own. If the command
  /// names one, a rule without settings has it too. Settings that are left out are named once.
  const Users& users_of(const NamedRule& rule) {
    const auto [known, is_new] = users_.try_emplace(&rule);
    Users& result = known->second;
    if (!is_new) return result;
    const auto [begin, end] = settings_by_rule_.equal_range(rule.name);
    for (auto user = begin; user != end; ++user) {
      const NamedSetting& setting = *user->second;
      if (!arguments_.calendar.empty()) {
        result.users.push_back({&setting, &arguments_.calendar});
      } else if (has_calendar(setting.calendar)) {
        result.users.push_back({&setting, &setting.calendar});
      } else if (!setting.calendar.empty()) {
        report(MistakeKind::setting_of_unknown_calendar, {setting.name, rule.name, setting.calendar});
        result.reason = MistakeKind::setting_of_unknown_calendar;
        output_.exit_code = with_differences;
      }
    }
    if (begin == end && !arguments_.calendar.empty()) result.users.push_back({nullptr, &arguments_.calendar});
    return result;
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
      const Progress adding = part(10, 30);
      for (std::size_t i = 0; i < rules_.size(); ++i) {
        advance(adding, i, rules_.size());
        add_rows(rules_[i], rows);
      }
    }
    if (calendar_is_missing_) throw CommandFailure{wrong_arguments};
    write(rows);
  }

  void add_rows(const NamedRule& rule, std::vector<ScheduleRow>& rows) {
    // A calendar that the command names gives the rule its rows by itself.
    if (!arguments_.calendar.empty()) return add_rows(rule, {nullptr, &arguments_.calendar}, rows);
    const Users& users = users_of(rule);
    for (const User& user : users.users) add_rows(rule, user, rows);
    if (users.users.empty()) {
      if (users.reason == MistakeKind::calendar_needed) need_calendar(rule, 0);
      return;
    }
    const auto [begin, end] = settings_by_rule_.equal_range(rule.name);
    for (auto user = begin; user != end; ++user) {
      if (user->second->calendar.empty())
        report(MistakeKind::setting_without_calendar, {user->second->name, rule.name});
    }
  }

  void add_rows(const NamedRule& rule, const User& user, std::vector<ScheduleRow>& rows) {
    const TradingDays& calendar = open_days(*user.calendar);
    for (Month contract = contracts_.first; contract <= contracts_.last; contract += std::chrono::months{1}) {
      if (user.setting && !is_delivery_month(contract, user.setting->months)) continue;
      const ContractDates dates = contract_dates(rule.numbers, contract, calendar, {.estimates = arguments_.estimate});
      if (year_ && !lies_in_year(dates, *year_)) continue;
      rows.push_back({rule.name, user.setting ? user.setting->name : std::string(), dates, *user.calendar});
    }
  }

  /// The command ends with wrong arguments when every rule without a calendar is named.
  void need_calendar(const NamedRule& rule, std::size_t line) {
    calendar_is_missing_ = true;
    if (line == 0) return report(MistakeKind::calendar_needed, {rule.name});
    mistakes_.push_back({line, MistakeKind::calendar_needed, {rule.name}});
  }

  void write(const std::vector<ScheduleRow>& rows) {
    const Progress writing = part(30, 100);
    switch (arguments_.format) {
      case Format::table:
        output_.data = schedule_table(rows, writing);
        break;
      case Format::csv:
        output_.data = schedule_csv(rows, writing);
        break;
      case Format::json:
        output_.data = schedule_json(rows, writing);
        break;
      case Format::icalendar:
        output_.data = schedule_icalendar(rows, today_, input_.language, writing);
        break;
      case Format::html: {
        const TradingDays* calendar = open_days_.size() == 1 ? &open_days_.begin()->second : nullptr;
        output_.data = year_page(rows, *year_, calendar, input_.language, writing);
      }
    }
  }

  void check() {
    if (is_file_name(arguments_.calendar)) open_days(arguments_.calendar);
    const DateList list = begin_list(read_rule_date_list(read(arguments_.file), part(10, 30)));
    std::vector<CheckRow> rows;
    const Progress checking = part(30, 80);
    for (std::size_t i = 0; i < list.dates.size(); ++i) {
      advance(checking, i, list.dates.size());
      if (std::optional<CheckRow> row = try_check(list.dates[i])) rows.push_back(*std::move(row));
    }
    report_mistakes();
    if (calendar_is_missing_) throw CommandFailure{wrong_arguments};
    if (!std::ranges::all_of(rows, [](const CheckRow& row) { return row.check.is_match(); }))
      output_.exit_code = with_differences;
    output_.data = check_csv(rows, part(80, 100));
  }

  /// Compares a listed date with the setting of its rule that comes nearest. Nothing if there is nothing to compare.
  std::optional<CheckRow> try_check(const ListedDate& listed) {
    const NamedRule* rule = find_rule(listed.rule);
    if (!rule) return refuse(listed.line, MistakeKind::unknown_rule, {listed.rule});
    const Users& users = users_of(*rule);
    if (users.users.empty()) {
      if (users.reason == MistakeKind::calendar_needed) need_calendar(*rule, listed.line);
      return std::nullopt;
    }
    std::optional<DateCheck> nearest;
    for (const auto& [setting, calendar] : users.users) {
      if (setting && !is_delivery_month(listed.known.contract, setting->months)) continue;
      const Against day_of_setting = setting && setting->last_day_is_expiration ? Against::expiration : Against::roll;
      DateCheck check =
          check_date(rule->numbers, listed.known, open_days(*calendar), arguments_.against.value_or(day_of_setting));
      if (!nearest || is_nearer(check, *nearest)) nearest = std::move(check);
    }
    if (!nearest) {
      return refuse(listed.line, MistakeKind::no_delivery_month, {rule->name, to_text(listed.known.contract)});
    }
    return CheckRow{rule->name, *std::move(nearest)};
  }

  std::nullopt_t refuse(std::size_t line, MistakeKind kind, std::vector<std::string> parameters) {
    mistakes_.push_back({line, kind, std::move(parameters)});
    output_.exit_code = with_differences;
    return std::nullopt;
  }

  /// Notes what is wrong with a list of dates. A list without a single date cannot be used.
  DateList begin_list(DateList list) {
    for (const std::string& column : list.ignored_columns)
      report(MistakeKind::ignored_column, {arguments_.file, column});
    mistakes_ = list.mistakes;
    if (!list.mistakes.empty() && list.dates.empty()) {
      report_mistakes();
      throw CommandFailure{unusable_file};
    }
    if (!list.mistakes.empty()) output_.exit_code = with_differences;
    return list;
  }

  /// Adds the messages about the lines of the list, in the order of the lines.
  void report_mistakes() {
    std::ranges::stable_sort(mistakes_, {}, &Mistake::line);
    report(arguments_.file, mistakes_);
  }

  void find() {
    const DateList list = begin_list(read_date_list(read(arguments_.file), part(0, 10)));
    const TradingDays& calendar = open_days(arguments_.calendar);
    std::vector<KnownDate> dates;
    for (const ListedDate& listed : list.dates) {
      dates.push_back(listed.known);
      const std::vector<std::string> day{to_text(listed.known.date)};
      if (!calendar.covers(listed.known.date)) {
        mistakes_.push_back({listed.line, MistakeKind::date_beyond_calendar, day});
      } else if (!calendar.is_open(listed.known.date)) {
        mistakes_.push_back({listed.line, MistakeKind::closed_date, day});
      }
    }
    report_mistakes();
    const FoundRules found =
        find_rules(dates, calendar, arguments_.against.value_or(Against::roll), arguments_.limit, part(10, 90));
    report_found(found);
    const Progress writing = part(90, 100);
    output_.data = arguments_.format == Format::csv    ? found_csv(found, writing)
                   : arguments_.format == Format::json ? found_json(found, writing)
                                                       : found_table(found, writing);
  }

  void report_found(const FoundRules& found) {
    const std::string counted = std::to_string(found.counted);
    if (found.agreeing == 0) {
      if (found.counted == 0) {
        report(MistakeKind::no_date_counts, {});
      } else {
        report(MistakeKind::no_rule_found, {counted});
      }
      output_.exit_code = with_differences;
    } else {
      report(found.agreeing == 1 ? MistakeKind::one_rule_found : MistakeKind::rules_found,
             {counted, std::to_string(found.agreeing)});
    }
  }

  Day today_;
  ContractRange contracts_;
  std::optional<std::chrono::year> year_;  ///< of which alone the dates are wanted
  std::vector<NamedRule> rules_;
  std::vector<NamedSetting> settings_;
  std::map<std::string_view, const NamedRule*> rules_by_name_;
  std::multimap<std::string_view, const NamedSetting*> settings_by_rule_;  ///< for each rule in their order
  std::map<const NamedRule*, Users> users_;
  std::map<std::string, TradingDays> open_days_;
  std::vector<Mistake> mistakes_;     ///< in the list of dates
  bool calendar_is_missing_ = false;  ///< whether a rule without a calendar was named
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
