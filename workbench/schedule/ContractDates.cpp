#include "ContractDates.h"

#include <algorithm>

namespace workbench::schedule {

namespace {

using std::chrono::days;

bool is_used(const RuleField& field, std::int32_t day_mode) {
  if (field.value == &RuleNumbers::move_to_next_trading_day) return false;
  if (field.value == &RuleNumbers::day_of_month || field.value == &RuleNumbers::day_month) return day_mode == 0;
  if (field.value == &RuleNumbers::week_ordinal || field.value == &RuleNumbers::weekday ||
      field.value == &RuleNumbers::weekday_month)
    return day_mode == 1;
  return true;
}

/// The open days with one day taken to be the opposite of what the calendar says.
class OpenDays {
 public:
  OpenDays(const TradingDays& base, std::optional<Day> toggled)
      : base_(base),
        toggled_(toggled.value_or(Day{})),
        change_(!toggled                 ? 0
                : base.is_open(*toggled) ? -1
                                         : 1),
        number_(toggled ? base.number_at(*toggled) : 0) {}

  bool is_open(Day day) const { return base_.is_open(day) != (change_ != 0 && day == toggled_); }

  std::int64_t number_at(Day day) const {
    return base_.number_at(day) + (change_ != 0 && day > toggled_ ? change_ : 0);
  }

  Day day_at(std::int64_t number) const {
    if (change_ == 0 || number < number_) return base_.day_at(number);
    return change_ > 0 && number == number_ ? toggled_ : base_.day_at(number - change_);
  }

 private:
  const TradingDays& base_;
  Day toggled_;
  int change_;
  std::int64_t number_;
};

/// The basis of what needs the calendar's days from `first` to `last`.
Basis basis_of(const TradingDays& calendar, Day first, Day last, bool estimates) {
  if (first >= calendar.from() && last <= calendar.to()) return Basis::calendar;
  return estimates ? Basis::estimate : Basis::beyond_calendar;
}

ContractDay day_on(Day day, Basis basis) {
  return {basis == Basis::beyond_calendar ? std::nullopt : std::optional(day), basis};
}

/// A day of the month after the contract's can be the specified one, and where the exchange opens once a week, an
/// offset of 99 trading days leads almost two years back.
constexpr std::chrono::months contracts_before{2};
constexpr std::chrono::months contracts_after{24};

Month month_of(Day day) {
  const std::chrono::year_month_day date{day};
  return {date.year(), date.month()};
}

}  // namespace

std::uint16_t invalid_fields(const RuleNumbers& rule) {
  unsigned invalid = 0;
  for (std::size_t i = 0; i < rule_fields.size(); ++i) {
    const RuleField& field = rule_fields[i];
    const std::int32_t value = rule.*field.value;
    if (is_used(field, rule.day_mode) && (value < field.least || value > field.greatest)) invalid |= 1U << i;
  }
  return static_cast<std::uint16_t>(invalid);
}

SpecifiedDay specified_day(const RuleNumbers& rule, Month contract) {
  const bool by_weekday = rule.day_mode == 1;
  const Month month = contract + std::chrono::months{(by_weekday ? rule.weekday_month : rule.day_month) - 1};
  if (by_weekday) {
    const std::chrono::weekday weekday{static_cast<unsigned>(rule.weekday)};
    if (rule.week_ordinal == 5) return {Day{month / weekday[std::chrono::last]}, false};
    return {Day{month / weekday[static_cast<unsigned>(rule.week_ordinal)]}, false};
  }
  const std::chrono::day last = std::chrono::year_month_day_last{month / std::chrono::last}.day();
  const std::chrono::day wanted{static_cast<unsigned>(rule.day_of_month)};
  return {Day{month / std::min(wanted, last)}, wanted > last};
}

ContractDates contract_dates(const RuleNumbers& rule, Month contract, const TradingDays& calendar,
                             const DateOptions& options) {
  ContractDates dates{.contract = contract, .invalid_fields = invalid_fields(rule)};
  if (dates.invalid_fields != 0) {
    dates.specified = dates.expiration = dates.roll = {std::nullopt, Basis::invalid_rule};
    return dates;
  }
  const OpenDays open_days(calendar, options.toggled_day);
  const auto basis = [&](Day first, Day last) { return basis_of(calendar, first, last, options.estimates); };

  const SpecifiedDay specified = specified_day(rule, contract);
  dates.specified.date = specified.day;
  dates.clamped = specified.clamped;

  const bool to_next = rule.move_to_next_trading_day == 1;
  const std::int64_t number =
      to_next ? open_days.number_at(specified.day) : open_days.number_at(specified.day + days{1}) - 1;
  const Day expiration = open_days.day_at(number);
  dates.expiration =
      day_on(expiration, basis(std::min(specified.day, expiration), std::max(specified.day, expiration)));
  dates.moved = dates.expiration.date && expiration != specified.day;

  if (rule.roll_offset == 0 || (rule.day_type == 1 && !dates.expiration.date)) {
    dates.roll = dates.expiration;
  } else if (rule.day_type == 0) {
    const Day roll = open_days.day_at(number - rule.roll_offset);
    // Moving forward skips closed days only, so the count back needs no day from the specified one on.
    dates.roll = day_on(roll, basis(roll, to_next ? specified.day - days{1} : specified.day));
  } else {
    const Day roll = expiration - days{rule.roll_offset};
    // The roll day itself needs no calendar; only whether the exchange is open then does.
    const Basis openness = basis(roll, roll);
    dates.roll = {roll, dates.expiration.basis == Basis::estimate ? Basis::estimate : openness};
    dates.closed = openness != Basis::beyond_calendar && !open_days.is_open(roll);
  }
  return dates;
}

ContractRange contracts_around(Day first, Day last) {
  return {std::max(month_of(first) - contracts_before, Month{std::chrono::year{first_year}, std::chrono::January}),
          std::min(month_of(last) + contracts_after, Month{std::chrono::year{last_year}, std::chrono::December})};
}

bool lies_in_year(const ContractDates& dates, std::chrono::year year) {
  const auto is_in_year = [&](const ContractDay& day) { return day.date && month_of(*day.date).year() == year; };
  if (is_in_year(dates.expiration) || is_in_year(dates.roll)) return true;
  if (dates.expiration.date && dates.roll.date) return false;
  return dates.specified.date ? is_in_year(dates.specified) : dates.contract.year() == year;
}

}  // namespace workbench::schedule
