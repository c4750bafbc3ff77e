#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <ql/time/calendars/bespokecalendar.hpp>
#include <ql/time/date.hpp>
#include <random>
#include <string>
#include <vector>

#include "RuleFinder.h"
#include "ShippedCalendars.h"

// Dates per second of the schedule library and of QuantLib, the same dates of both, and the time of a search for a
// rule.

namespace {

using namespace workbench::schedule;
using Clock = std::chrono::steady_clock;
using std::chrono::days;

/// Contracts whose dates lie within the calendar whatever the rule: 60 months from here on.
constexpr Month first_contract{std::chrono::year{2015}, std::chrono::January};
constexpr int months_of_a_rule = 60;

double seconds_since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

QuantLib::Date to_quantlib(Day day) {
  // Both count days one by one; 25569 is the day of 1970-01-01.
  return QuantLib::Date(static_cast<QuantLib::Date::serial_type>(day.time_since_epoch().count() + 25569));
}

Day from_quantlib(const QuantLib::Date& date) { return Day{days{date.serialNumber() - 25569}}; }

QuantLib::BespokeCalendar quantlib_calendar(const Calendar& calendar) {
  QuantLib::BespokeCalendar result(calendar.name);
  result.addWeekend(QuantLib::Saturday);
  result.addWeekend(QuantLib::Sunday);
  for (const ClosedDay& closed : calendar.closed) result.addHoliday(to_quantlib(closed.day));
  return result;
}

QuantLib::Date specified_date(const RuleNumbers& rule, Month contract) {
  const Month month = contract + std::chrono::months{(rule.day_mode == 0 ? rule.day_month : rule.weekday_month) - 1};
  const auto year = static_cast<QuantLib::Year>(static_cast<int>(month.year()));
  const auto name = static_cast<QuantLib::Month>(static_cast<unsigned>(month.month()));
  const QuantLib::Date last = QuantLib::Date::endOfMonth(QuantLib::Date(1, name, year));
  if (rule.day_mode == 0) return QuantLib::Date(std::min<int>(rule.day_of_month, last.dayOfMonth()), name, year);
  const auto weekday = static_cast<QuantLib::Weekday>(rule.weekday + 1);
  if (rule.week_ordinal < 5) return QuantLib::Date::nthWeekday(rule.week_ordinal, weekday, name, year);
  return last - (last.weekday() - weekday + 7) % 7;
}

struct BothDays {
  Day expiration{};
  Day roll{};

  bool operator==(const BothDays&) const = default;
};

BothDays days_by_quantlib(const RuleNumbers& rule, Month contract, const QuantLib::Calendar& calendar) {
  const QuantLib::Date expiration = calendar.adjust(
      specified_date(rule, contract), rule.move_to_next_trading_day == 1 ? QuantLib::Following : QuantLib::Preceding);
  const QuantLib::Date roll = rule.roll_offset == 0 ? expiration
                              : rule.day_type == 1  ? expiration - rule.roll_offset
                                                    : calendar.advance(expiration, -rule.roll_offset, QuantLib::Days);
  return {from_quantlib(expiration), from_quantlib(roll)};
}

BothDays days_by_library(const RuleNumbers& rule, Month contract, const TradingDays& calendar) {
  const ContractDates dates = contract_dates(rule, contract, calendar);
  return {*dates.expiration.date, *dates.roll.date};
}

/// Works out the days of every rule and contract.
template <class Work>
std::vector<BothDays> all_days(const std::vector<RuleNumbers>& rules, const Work& work) {
  std::vector<BothDays> result;
  result.reserve(rules.size() * months_of_a_rule);
  for (const RuleNumbers& rule : rules)
    for (int i = 0; i < months_of_a_rule; ++i) result.push_back(work(rule, first_contract + std::chrono::months{i}));
  return result;
}

std::vector<RuleNumbers> random_rules(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<RuleNumbers> rules(count);
  for (RuleNumbers& rule : rules)
    for (const RuleField& field : rule_fields)
      rule.*field.value = std::uniform_int_distribution<std::int32_t>(field.least, field.greatest)(random);
  return rules;
}

void print_search(const TradingDays& calendar, int count) {
  const RuleNumbers rule{.day_mode = 1, .week_ordinal = 3, .weekday = 5, .move_to_next_trading_day = 1};
  std::vector<KnownDate> dates;
  for (int i = 0; i < count; ++i) {
    const Month contract = first_contract + std::chrono::months{i};
    dates.push_back({contract, days_by_library(rule, contract, calendar).roll});
  }
  const auto start = Clock::now();
  const FoundRules found = find_rules(dates, calendar, Against::roll);
  std::printf("search for a rule from %3d dates: %8.1f ms, %zu rules agree\n", count, seconds_since(start) * 1000,
              found.agreeing);
}

}  // namespace

/// schedule_bench [RULES [SEED]]: fails when the library and QuantLib disagree about a date.
int main(int argc, char** argv) {
  const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 10'000;
  const unsigned seed = argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)) : std::random_device{}();
  const std::vector<RuleNumbers> rules = random_rules(count, seed);
  std::printf("%zu rules by %d months, seed %u\n", count, months_of_a_rule, seed);
  std::size_t differences = 0;
  for (const Calendar& calendar : shipped_calendars()) {
    const TradingDays open_days = trading_days(calendar);
    const QuantLib::BespokeCalendar peer = quantlib_calendar(calendar);
    auto start = Clock::now();
    const auto ours = all_days(
        rules, [&](const RuleNumbers& rule, Month contract) { return days_by_library(rule, contract, open_days); });
    const double our_time = seconds_since(start);
    start = Clock::now();
    const auto theirs = all_days(
        rules, [&](const RuleNumbers& rule, Month contract) { return days_by_quantlib(rule, contract, peer); });
    const double their_time = seconds_since(start);
    std::size_t different = 0;
    for (std::size_t i = 0; i < ours.size(); ++i) different += ours[i] != theirs[i];
    const auto dates = static_cast<double>(ours.size());
    std::printf("%-18s %12.0f dates/s, QuantLib %10.0f dates/s, ratio %6.1f, %zu differences\n", calendar.name.c_str(),
                dates / our_time, dates / their_time, their_time / our_time, different);
    differences += different;
  }
  for (const Calendar& calendar : shipped_calendars()) {
    if (calendar.name != "china-futures") continue;
    print_search(trading_days(calendar), 12);
    print_search(trading_days(calendar), 120);
  }
  return differences == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
