#pragma once

#include <vector>

#include "Calendar.h"

namespace workbench::schedule {

/// The calendars that come with the program, by name.
std::vector<Calendar> shipped_calendars();

}  // namespace workbench::schedule
