#pragma once

#include "FixedReports.h"

namespace SnagtrapUtil {

/// The location in the sources that a report names. All texts live as long as the program.
struct SourceLocation {
  const char* file;       ///< file name with extension, without folder
  int line;               ///< 1-based
  const char* function;   ///< the function's name
  const char* signature;  ///< the function's full signature
};

/// The location of a row of `fixed_reports`. Reporting functions take only those of their own kind.
template <ReportKind kind>
struct FixedLocation {
  SourceLocation location;
  const wchar_t* expression;  ///< the text of an assertion
};

template <std::size_t row>
constexpr FixedLocation<fixed_reports[row].kind> fixed_location(const char* function, const char* signature) noexcept {
  return {{fixed_reports[row].file, fixed_reports[row].line, function, signature}, fixed_reports[row].expression};
}

}  // namespace SnagtrapUtil

/// The current function as the location of the row of `fixed_reports` with this file and line. The line is fixed
/// because support staff search for it; it need not be the line where the macro stands.
#define ZD_LOCATION_IN(file, line) \
  (::SnagtrapUtil::fixed_location<::SnagtrapUtil::fixed_report_row(file, line)>(__func__, __PRETTY_FUNCTION__))

/// The same for a row that names this source file.
#define ZD_LOCATION_AT(line) ZD_LOCATION_IN(__FILE_NAME__, line)

/// The current function as a location, at the line where this stands.
#define ZD_LOCATION (::SnagtrapUtil::SourceLocation{__FILE_NAME__, __LINE__, __func__, __PRETTY_FUNCTION__})
