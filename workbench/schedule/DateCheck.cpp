#include "DateCheck.h"

#include <algorithm>
#include <cstdlib>

namespace workbench::schedule {

namespace {

using std::chrono::days;

/// The days that would explain why the rule gives other dates than these. Only a day on which the dates rest can.
std::vector<Day> explanations(const RuleNumbers& rule, const KnownDate& listed, const ContractDates& dates,
                              const TradingDays& calendar, Against against) {
  Day first = *dates.specified.date;
  Day last = first;
  for (const ContractDay& day : {dates.expiration, dates.roll}) {
    if (!day.date) continue;
    first = std::min(first, *day.date);
    last = std::max(last, *day.date);
  }
  first = std::max(first, calendar.from());
  last = std::min(last, calendar.to());
  std::vector<Day> found;
  for (Day day = first; day <= last; day += days{1}) {
    if (calendar.is_weekend(day)) continue;
    const ContractDates other = contract_dates(rule, listed.contract, calendar, {.toggled_day = day});
    if (chosen(other, against).date == listed.date) found.push_back(day);
  }
  return found;
}

}  // namespace

DateCheck check_date(const RuleNumbers& rule, const KnownDate& listed, const TradingDays& calendar, Against against) {
  const ContractDates dates = contract_dates(rule, listed.contract, calendar);
  DateCheck check{listed, chosen(dates, against)};
  if (!check.found.date) return check;
  check.days = static_cast<int>((*check.found.date - listed.date).count());
  if (check.days != 0) check.explained_by = explanations(rule, listed, dates, calendar, against);
  return check;
}

bool is_nearer(const DateCheck& check, const DateCheck& other) {
  return check.days && (!other.days || std::abs(*check.days) < std::abs(*other.days));
}

}  // namespace workbench::schedule
