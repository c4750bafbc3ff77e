#include "CalendarChange.h"

#include <algorithm>
#include <map>
#include <optional>

#include "DateList.h"

namespace workbench::schedule {

namespace {

using std::chrono::days;
using std::chrono::months;

std::string reason_of(const Calendar& calendar, Day day) {
  const auto found = std::ranges::lower_bound(calendar.closed, day, {}, &ClosedDay::day);
  return found == calendar.closed.end() || found->day != day ? std::string() : found->reason;
}

}  // namespace

std::vector<ChangedDay> changed_days(const Calendar& before, const Calendar& after) {
  const TradingDays old_days = trading_days(before);
  const TradingDays new_days = trading_days(after);
  std::vector<ChangedDay> changed;
  for (Day day = std::min(before.from, after.from); day <= std::max(before.to, after.to); day += days{1}) {
    if (old_days.is_open(day) == new_days.is_open(day)) continue;
    const bool closed = !new_days.is_open(day);
    changed.push_back({day, closed, reason_of(closed ? after : before, day)});
  }
  return changed;
}

namespace {

/// The dates that change when `after` replaces `before`; null when there was no such calendar, so that no date was
/// known.
std::vector<ChangedDates> changed_dates(const Calendar* before, const Calendar& after, std::span<const NamedRule> rules,
                                        std::span<const NamedSetting> settings, const Progress& progress) {
  const std::optional<TradingDays> old_days = before ? std::optional(trading_days(*before)) : std::nullopt;
  const TradingDays new_days = trading_days(after);
  const Calendar& other = before ? *before : after;
  const auto [first, last] = contracts_around(std::min(other.from, after.from), std::max(other.to, after.to));
  std::vector<ChangedDates> changed;
  std::map<std::string_view, const NamedRule*> rules_by_name;
  for (const NamedRule& rule : rules) rules_by_name.emplace(rule.name, &rule);
  for (std::size_t i = 0; i < settings.size(); ++i) {
    advance(progress, i, settings.size());
    const NamedSetting& setting = settings[i];
    const auto found = rules_by_name.find(setting.rule);
    if (setting.calendar != after.name || found == rules_by_name.end()) continue;
    const NamedRule* rule = found->second;
    for (Month contract = first; contract <= last; contract += months{1}) {
      if (!is_delivery_month(contract, setting.months)) continue;
      const ContractDates new_dates = contract_dates(rule->numbers, contract, new_days);
      ContractDates old_dates{.contract = contract};
      if (old_days) old_dates = contract_dates(rule->numbers, contract, *old_days);
      const bool changes =
          old_days ? old_dates != new_dates : new_dates.expiration.date.has_value() || new_dates.roll.date.has_value();
      if (changes) changed.push_back({{rule->name, setting.name, old_dates}, {rule->name, setting.name, new_dates}});
    }
  }
  return changed;
}

}  // namespace

CalendarPlan plan_calendar(const Calendar& calendar, std::span<const Calendar> stored, std::span<const NamedRule> rules,
                           std::span<const NamedSetting> settings, const Progress& progress) {
  CalendarPlan plan;
  const auto found = std::ranges::find(stored, calendar.name, &Calendar::name);
  if (found == stored.end()) {
    plan.notes.push_back({0, MistakeKind::new_calendar, {calendar.name, to_text(calendar.from), to_text(calendar.to)}});
    Calendar nothing_closed = calendar;
    nothing_closed.closed.clear();
    plan.days = changed_days(nothing_closed, calendar);
    plan.dates = changed_dates(nullptr, calendar, rules, settings, progress);
  } else if (*found == calendar) {
    plan.is_same = true;
    plan.notes.push_back({0, MistakeKind::same_calendar, {calendar.name}});
    return plan;
  } else {
    if (found->from != calendar.from || found->to != calendar.to) {
      plan.notes.push_back(
          {0,
           MistakeKind::calendar_range,
           {calendar.name, to_text(found->from), to_text(found->to), to_text(calendar.from), to_text(calendar.to)}});
    }
    plan.days = changed_days(*found, calendar);
    plan.dates = changed_dates(&*found, calendar, rules, settings, progress);
  }
  plan.notes.push_back(
      {0, MistakeKind::calendar_summary, {std::to_string(plan.days.size()), std::to_string(plan.dates.size())}});
  return plan;
}

TextTable table_of(const std::vector<ChangedDay>& days) {
  TextTable table{{"day", "change", "reason"}};
  for (const ChangedDay& changed : days)
    table.push_back({to_text(changed.day), changed.closed ? "closed" : "open", changed.reason});
  return table;
}

TextTable table_of(const std::vector<ChangedDates>& dates) {
  TextTable table{{"rule", "setting", "contract", "expiration_before", "expiration", "roll_before", "roll"}};
  for (const auto& [before, after] : dates) {
    table.push_back({after.rule, after.setting, to_text(after.dates.contract), known_text(before.dates.expiration),
                     known_text(after.dates.expiration), known_text(before.dates.roll), known_text(after.dates.roll)});
  }
  return table;
}

}  // namespace workbench::schedule
