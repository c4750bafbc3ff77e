#pragma once

#include <string>
#include <string_view>

namespace workbench {

/// A list of dates in the form of a file of dates.
struct PastedDates {
  std::string file;
  std::size_t added_lines = 0;  ///< how many lines of the file come before the first one of the user's text
};

/// A list of dates as a user pastes or types it: where the first line does not name the columns, a line that does is
/// put before it, and the two values of a line may be separated by a comma, also a full-width one, a tab or spaces.
PastedDates date_file_of(std::string_view pasted);

}  // namespace workbench
