#include "ShippedUpdate.h"

#include <algorithm>

namespace workbench {

std::vector<schedule::Calendar> newer_calendars(const std::vector<StoredCalendar>& stored,
                                                const ShippedCalendars& shipped) {
  const auto is_current = [&](const StoredCalendar& calendar) { return calendar.shipped_version >= shipped.version; };
  const bool has_current = std::ranges::any_of(stored, is_current);
  std::vector<schedule::Calendar> newer;
  for (const schedule::Calendar& calendar : shipped.calendars) {
    const auto found =
        std::ranges::find_if(stored, [&](const StoredCalendar& other) { return other.calendar.name == calendar.name; });
    const bool is_newer = found == stored.end() ? !has_current : !is_current(*found) && found->calendar != calendar;
    if (is_newer) newer.push_back(calendar);
  }
  return newer;
}

void offer_newer_calendars(RuleStore& store,
                           const std::function<bool(const std::vector<schedule::Calendar>& newer)>& wants,
                           const ShippedCalendars& shipped) {
  std::vector<StoredCalendar> calendars = store.load_calendars();
  const std::vector<schedule::Calendar> newer = newer_calendars(calendars, shipped);
  if (newer.empty()) return;
  const bool wanted = wants(newer);
  // They may have changed while the user was asked.
  calendars = store.load_calendars();
  for (StoredCalendar& calendar : calendars)
    calendar.shipped_version = std::max(calendar.shipped_version, shipped.version);
  if (wanted)
    for (const schedule::Calendar& calendar : newer) calendars.push_back({calendar, shipped.version});
  store.replace_calendars(calendars);
}

}  // namespace workbench
