#include "CheckModel.h"

#include <algorithm>

namespace workbench {

namespace {

using schedule::Against;
using schedule::ListedDate;
using schedule::MistakeKind;
using schedule::NamedRule;
using schedule::NamedSetting;

class ListCheck {
 public:
  ListCheck(const ScheduleData& data, const CheckChoice& choice) : data_(data), choice_(choice) {
    for (const auto& rule : data.rules) rules_.emplace(rule.item.name, &rule.item);
    for (const auto& setting : data.settings) settings_.emplace(setting.item.rule, &setting.item);
  }

  void add(const ListedDate& listed) {
    const auto rule = rules_.find(listed.rule);
    if (rule == rules_.end()) return refuse(listed, MistakeKind::unknown_rule, listed.rule);
    const auto user = settings_.find(listed.rule);
    const NamedSetting* setting = user == settings_.end() ? nullptr : user->second;
    const std::string& name = choice_.calendar.empty() && setting ? setting->calendar : choice_.calendar;
    if (name.empty()) return refuse(listed, MistakeKind::calendar_needed, listed.rule);
    const OpenDays* days = open_days(name);
    if (!days) return refuse(listed, MistakeKind::unknown_calendar, name);
    const Against of_setting = setting && setting->last_day_is_expiration ? Against::expiration : Against::roll;
    CheckedDate checked{listed.rule, check_date(rule->second->numbers, listed.known, days->index,
                                                choice_.against.value_or(of_setting))};
    for (const schedule::Day day : checked.check.explained_by)
      checked.explained_by.push_back(explain(*days->calendar, day));
    RuleMatches& matches = list_.rules[listed.rule];
    matches.matches += checked.check.is_match() ? 1 : 0;
    ++matches.dates;
    list_.dates.push_back(std::move(checked));
  }

  CheckedList finish(const std::vector<schedule::Mistake>& mistakes) {
    std::ranges::stable_sort(list_.dates, {}, &CheckedDate::rule);
    list_.mistakes.insert(list_.mistakes.end(), mistakes.begin(), mistakes.end());
    std::ranges::stable_sort(list_.mistakes, {}, &schedule::Mistake::line);
    return std::move(list_);
  }

 private:
  struct OpenDays {
    const schedule::Calendar* calendar;
    schedule::TradingDays index;
  };

  void refuse(const ListedDate& listed, MistakeKind kind, const std::string& subject) {
    list_.mistakes.push_back({listed.line, kind, {subject}});
  }

  const OpenDays* open_days(const std::string& name) {
    const auto known = open_days_.find(name);
    if (known != open_days_.end()) return &known->second;
    const auto found = std::ranges::find(data_.calendars, name, &schedule::Calendar::name);
    if (found == data_.calendars.end()) return nullptr;
    return &open_days_.emplace(name, OpenDays{&*found, trading_days(*found)}).first->second;
  }

  static Explanation explain(const schedule::Calendar& calendar, schedule::Day day) {
    const auto closed = std::ranges::lower_bound(calendar.closed, day, {}, &schedule::ClosedDay::day);
    if (closed == calendar.closed.end() || closed->day != day) return {day};
    return {day, true, closed->reason};
  }

  const ScheduleData& data_;
  const CheckChoice& choice_;
  std::map<std::string_view, const NamedRule*> rules_;
  std::map<std::string_view, const NamedSetting*> settings_;  // the first setting of each rule
  std::map<std::string, OpenDays> open_days_;
  CheckedList list_;
};

}  // namespace

CheckedList check_list(const ScheduleData& data, const schedule::DateList& list, const CheckChoice& choice,
                       const Progress& progress) {
  ListCheck check(data, choice);
  for (std::size_t at = 0; at < list.dates.size(); ++at) {
    if (!progress(at, list.dates.size())) return {.cancelled = true};
    check.add(list.dates[at]);
  }
  return check.finish(list.mistakes);
}

}  // namespace workbench
