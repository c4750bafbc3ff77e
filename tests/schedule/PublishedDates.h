#pragma once

#include <vector>

#include "RuleFinder.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

/// A rule with last trading days that the exchange published.
struct PublishedRule {
  const char* product;
  const char* calendar;
  RuleNumbers rule;
  std::vector<KnownDate> dates;
};

inline KnownDate published(std::string_view contract, std::string_view date) { return {month(contract), day(date)}; }

inline std::vector<PublishedRule> published_rules() {
  return {
      {"CSI 300",
       "china-futures",
       on_weekday(3, 5, current_month, true),
       {published("2015-02", "2015-02-25"), published("2024-02", "2024-02-19"), published("2026-02", "2026-02-24")}},
      {"copper",
       "china-futures",
       on_day(15, current_month, true),
       {published("2024-06", "2024-06-17"), published("2024-08", "2024-08-15"), published("2024-09", "2024-09-18")}},
      {"freight",
       "china-futures",
       on_weekday(5, 1),
       {published("2024-08", "2024-08-26"), published("2024-12", "2024-12-30"), published("2025-06", "2025-06-30")}},
      {"crude oil",
       "us-futures",
       less(on_day(25, previous_month), 3, in_trading_days),
       {published("2017-09", "2017-08-22"), published("2020-04", "2020-03-20"), published("2021-01", "2020-12-21")}},
      {"gold",
       "us-futures",
       less(on_day(1, next_month, true), 3, in_trading_days),
       {published("2017-06", "2017-06-28"), published("2018-12", "2018-12-27"), published("2022-12", "2022-12-28")}},
      {"bitcoin", "us-futures", on_weekday(5, 5), {published("2018-03", "2018-03-29")}},
      {"VIX",
       "us-futures",
       less(on_weekday(3, 5, next_month), 30, in_calendar_days),
       {published("2014-03", "2014-03-18")}},
  };
}

}  // namespace workbench::schedule
