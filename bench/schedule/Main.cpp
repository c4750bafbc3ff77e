#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "QuantLibPeer.h"
#include "RandomRules.h"
#include "RuleFinder.h"
#include "ShippedCalendars.h"

// Dates per second of the schedule library and of QuantLib, the same dates of both, and the time of a search for a
// rule.

namespace {

using namespace workbench::schedule;
using Clock = std::chrono::steady_clock;
using quantlib_peer::BothDays;

/// Contracts whose dates lie within the calendar whatever the rule: 60 months from here on.
constexpr Month first_contract{std::chrono::year{2015}, std::chrono::January};
constexpr int months_of_a_rule = 60;

double seconds_since(Clock::time_point start) { return std::chrono::duration<double>(Clock::now() - start).count(); }

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

/// schedule_main [RULES [SEED]]: fails when the library and QuantLib disagree about a date.
int main(int argc, char** argv) {
  const std::size_t count = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 10'000;
  const unsigned seed = argc > 2 ? static_cast<unsigned>(std::strtoul(argv[2], nullptr, 10)) : std::random_device{}();
  std::mt19937 random(seed);
  const std::vector<RuleNumbers> rules = random_rules(count, random);
  std::printf("%zu rules by %d months, seed %u\n", count, months_of_a_rule, seed);
  std::size_t differences = 0;
  for (const Calendar& calendar : shipped_calendars()) {
    const TradingDays open_days = trading_days(calendar);
    std::vector<Day> closed;
    for (const ClosedDay& day : calendar.closed) closed.push_back(day.day);
    const QuantLib::BespokeCalendar peer = quantlib_peer::calendar_of(calendar.name, calendar.weekend, closed);
    auto start = Clock::now();
    const auto ours = all_days(
        rules, [&](const RuleNumbers& rule, Month contract) { return days_by_library(rule, contract, open_days); });
    const double our_time = seconds_since(start);
    start = Clock::now();
    const auto theirs = all_days(
        rules, [&](const RuleNumbers& rule, Month contract) { return quantlib_peer::days_of(rule, contract, peer); });
    const double their_time = seconds_since(start);
    std::size_t different = 0;
    for (std::size_t i = 0; i < ours.size(); ++i) different += ours[i] != theirs[i];
    const auto dates = static_cast<double>(ours.size());
    std::printf("%-18s %7.1f ms, %11.0f dates/s; QuantLib %7.0f ms, %9.0f dates/s; ratio %5.1f; %zu differences\n",
                calendar.name.c_str(), our_time * 1000, dates / our_time, their_time * 1000, dates / their_time,
                their_time / our_time, different);
    differences += different;
  }
  for (const Calendar& calendar : shipped_calendars()) {
    if (calendar.name != "china-futures") continue;
    print_search(trading_days(calendar), 12);
    print_search(trading_days(calendar), 120);
  }
  return differences == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
