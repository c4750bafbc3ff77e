#pragma once

#include <string>
#include <vector>

#include "RuleStore.h"
#include "ShippedCalendars.h"

namespace workbench {

/// The shipped calendars, and their version.
struct ShippedCalendars {
  std::vector<schedule::Calendar> calendars = schedule::shipped_calendars();
  long version = schedule::shipped_calendars_version;
};

/// Those of the shipped calendars that are newer than what the store holds and that its user has not declined yet.
std::vector<schedule::Calendar> newer_calendars(const std::vector<StoredCalendar>& stored,
                                                const ShippedCalendars& shipped = {});

/// Offers the newer calendars to the user, once for each version: `wants` is given them and returns whether they are to
/// replace those in the store.
void offer_newer_calendars(RuleStore& store,
                           const std::function<bool(const std::vector<schedule::Calendar>& newer)>& wants,
                           const ShippedCalendars& shipped = {});

}  // namespace workbench
