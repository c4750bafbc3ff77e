#pragma once

#include <vector>

#include "Calendar.h"

namespace workbench::schedule {

/// Counts the changes of the shipped calendars: raised whenever one of them changes, so that a store can distinguish an
/// older one from one that its user changed.
inline constexpr long shipped_calendars_version = 1;

/// The calendars that come with the program, by name.
std::vector<Calendar> shipped_calendars();

}  // namespace workbench::schedule
