// Random rules on random calendars: every date and flag of the schedule library is compared with that of QuantLib.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>

#include "QuantLibPeer.h"
#include "RandomRules.h"

namespace {

using namespace workbench::schedule;
using quantlib_peer::AllDates;
using std::chrono::days;

constexpr std::size_t rules_of_a_calendar = 50;

/// A number from 0 to `last`.
unsigned up_to(unsigned last, std::mt19937& random) { return std::uniform_int_distribution<unsigned>(0, last)(random); }

struct RandomCalendar {
  Day from{};
  Day to{};
  WeekdaySet weekend = saturday_and_sunday;
  std::vector<Day> closed{};
};

/// A calendar of up to four years between 1950 and 2150, with any weekend and up to a third of its other days closed.
RandomCalendar random_calendar(std::mt19937& random) {
  RandomCalendar calendar;
  calendar.from = Day{std::chrono::year{1950} / 1 / 1} + days{up_to(70'000, random)};
  calendar.to = calendar.from + days{up_to(1500, random)};
  if (up_to(1, random) == 0) calendar.weekend = static_cast<WeekdaySet>(up_to(every_weekday - 1, random));
  const unsigned one_in = 3 + up_to(60, random);
  for (Day day = calendar.from; day <= calendar.to; day += days{1}) {
    if (up_to(one_in - 1, random) == 0) calendar.closed.push_back(day);
  }
  return calendar;
}

/// With estimates, which take the days outside the calendar as QuantLib does.
AllDates dates_by_library(const RuleNumbers& rule, Month contract, const TradingDays& calendar) {
  const ContractDates dates = contract_dates(rule, contract, calendar, {.estimates = true});
  return {*dates.specified.date, {*dates.expiration.date, *dates.roll.date}, dates.clamped, dates.moved, dates.closed};
}

}  // namespace

/// schedule_compare [CALENDARS [SEED]]: fails when the library and QuantLib disagree.
int main(int argc, char** argv) {
  const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 2'000;
  const unsigned seed = argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)) : std::random_device{}();
  std::mt19937 random(seed);
  std::printf("%zu calendars with %zu rules each, seed %u\n", count, rules_of_a_calendar, seed);
  std::size_t differences = 0;
  for (std::size_t number = 0; number < count; ++number) {
    const auto [from, to, weekend, closed] = random_calendar(random);
    const TradingDays open_days(from, to, weekend, closed);
    const QuantLib::BespokeCalendar peer =
        quantlib_peer::calendar_of("random " + std::to_string(number), weekend, closed);
    for (const RuleNumbers& rule : random_rules(rules_of_a_calendar, random)) {
      const std::chrono::year_month_day around{from + days{up_to(1700, random)} - days{100}};
      const Month contract{around.year(), around.month()};
      if (dates_by_library(rule, contract, open_days) == quantlib_peer::dates_of(rule, contract, peer)) continue;
      if (differences++ == 0) {
        std::printf("the first difference: calendar %zu, contract %s, rule", number, to_text(contract).c_str());
        for (const RuleField& field : rule_fields) std::printf(" %d", rule.*field.value);
        std::printf("\n");
      }
    }
  }
  std::printf("%zu dates compared, %zu differences\n", count * rules_of_a_calendar, differences);
  return differences == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
