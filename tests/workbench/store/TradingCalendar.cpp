#include "TradingCalendar.h"

using namespace std::chrono;
using workbench::Rule;

namespace {

bool is_trading_day(sys_days day, const Holidays& holidays) {
  const weekday weekday(day);
  return weekday != Saturday && weekday != Sunday && !holidays.contains(day);
}

sys_days specified_day(const Rule& rule, year_month contract) {
  const long month_code = rule.day_mode == 0 ? rule.day_month : rule.weekday_month;
  const year_month month = contract + months(month_code - 1);
  if (rule.day_mode == 0) return month / static_cast<int>(rule.day_of_month);
  const weekday weekday(static_cast<unsigned>(rule.weekday));
  if (rule.week_ordinal == 5) return month / weekday[last];
  return month / weekday[static_cast<unsigned>(rule.week_ordinal)];
}

}  // namespace

year_month_day expiration_day(const Rule& rule, year_month contract, const Holidays& holidays) {
  sys_days day = specified_day(rule, contract);
  while (!is_trading_day(day, holidays)) day += days(rule.move_to_next_trading_day == 1 ? 1 : -1);
  for (long left = rule.roll_offset; left > 0;) {
    day -= days(1);
    if (rule.day_type == 1 || is_trading_day(day, holidays)) --left;
  }
  return day;
}
