#include "CalendarChange.h"

#include <algorithm>

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

std::vector<ChangedDates> changed_dates(const Calendar& before, const Calendar& after, std::span<const NamedRule> rules,
                                        std::span<const NamedSetting> settings) {
  const TradingDays old_days = trading_days(before);
  const TradingDays new_days = trading_days(after);
  const auto [first, last] = contracts_around(std::min(before.from, after.from), std::max(before.to, after.to));
  std::vector<ChangedDates> changed;
  for (const NamedSetting& setting : settings) {
    const auto rule = std::ranges::find(rules, setting.rule, &NamedRule::name);
    if (setting.calendar != after.name || rule == rules.end()) continue;
    for (Month contract = first; contract <= last; contract += months{1}) {
      if (!is_delivery_month(contract, setting.months)) continue;
      const ContractDates old_dates = contract_dates(rule->numbers, contract, old_days);
      const ContractDates new_dates = contract_dates(rule->numbers, contract, new_days);
      if (old_dates == new_dates) continue;
      changed.push_back({{rule->name, setting.name, old_dates}, {rule->name, setting.name, new_dates}});
    }
  }
  return changed;
}

}  // namespace workbench::schedule
