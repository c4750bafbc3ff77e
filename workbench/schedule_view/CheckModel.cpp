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
    if (rule == rules_.end()) return refuse(listed, MistakeKind::unknown_rule, {listed.rule});
    std::optional<schedule::DateCheck> nearest;
    const schedule::Calendar* calendar = nullptr;
    std::string missing;
    bool delivers = true;
    const auto compare = [&](const std::string& name, Against of_setting) {
      if (name.empty()) return;
      const OpenDays* days = open_days(name);
      if (!days) {
        missing = name;
        return;
      }
      schedule::DateCheck check =
          check_date(rule->second->numbers, listed.known, days->index, choice_.against.value_or(of_setting));
      if (nearest && !is_nearer(check, *nearest)) return;
      nearest = std::move(check);
      calendar = days->calendar;
    };
    const auto [begin, end] = settings_.equal_range(listed.rule);
    if (begin == end) compare(choice_.calendar, Against::roll);
    for (auto user = begin; user != end; ++user) {
      const NamedSetting& setting = *user->second;
      if (!schedule::is_delivery_month(listed.known.contract, setting.months)) {
        delivers = false;
        continue;
      }
      compare(choice_.calendar.empty() ? setting.calendar : choice_.calendar,
              setting.last_day_is_expiration ? Against::expiration : Against::roll);
    }
    if (!nearest && !missing.empty()) return refuse(listed, MistakeKind::unknown_calendar, {missing});
    if (!nearest && !delivers)
      return refuse(listed, MistakeKind::no_delivery_month, {listed.rule, schedule::to_text(listed.known.contract)});
    if (!nearest) return refuse(listed, MistakeKind::calendar_missing, {listed.rule});
    CheckedDate checked{listed.rule, *std::move(nearest)};
    for (const schedule::Day day : checked.check.explained_by) checked.explained_by.push_back(explain(*calendar, day));
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

  void refuse(const ListedDate& listed, MistakeKind kind, std::vector<std::string> subjects) {
    list_.mistakes.push_back({listed.line, kind, std::move(subjects)});
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
  std::multimap<std::string_view, const NamedSetting*> settings_;  // by rule, in their order
  std::map<std::string, OpenDays> open_days_;
  CheckedList list_;
};

}  // namespace

CheckedList check_list(const ScheduleData& data, const schedule::DateList& list, const CheckChoice& choice,
                       const schedule::Progress& progress) {
  ListCheck check(data, choice);
  for (std::size_t at = 0; at < list.dates.size(); ++at) {
    schedule::advance(progress, at, list.dates.size());
    check.add(list.dates[at]);
  }
  return check.finish(list.mistakes);
}

}  // namespace workbench
