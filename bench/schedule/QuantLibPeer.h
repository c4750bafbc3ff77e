#pragma once

#include <ql/time/calendars/bespokecalendar.hpp>
#include <string>
#include <vector>

#include "ContractDates.h"

// The days that rules give, worked out by QuantLib.
namespace quantlib_peer {

using workbench::schedule::Day;
using workbench::schedule::Month;
using workbench::schedule::RuleNumbers;

/// A calendar that is closed on these days of the week and on these days, and open on all others.
QuantLib::BespokeCalendar calendar_of(const std::string& name, workbench::schedule::WeekdaySet weekend,
                                      const std::vector<Day>& closed);

struct BothDays {
  Day expiration{};
  Day roll{};

  bool operator==(const BothDays&) const = default;
};

BothDays days_of(const RuleNumbers& rule, Month contract, const QuantLib::Calendar& calendar);

/// The same with the specified day and the flags.
struct AllDates {
  Day specified{};
  BothDays days{};
  bool clamped = false;
  bool moved = false;
  bool closed = false;

  bool operator==(const AllDates&) const = default;
};

AllDates dates_of(const RuleNumbers& rule, Month contract, const QuantLib::Calendar& calendar);

}  // namespace quantlib_peer
