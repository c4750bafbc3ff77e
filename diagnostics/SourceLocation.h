#pragma once

namespace SnagtrapUtil {

/// The place in the sources that a report names. Support staff search for file and line, so places whose line is fixed
/// carry a named constant instead of the line they happen to stand at. All texts live as long as the program.
struct SourceLocation {
  const char* file;       ///< file name with extension, without folder
  int line;               ///< 1-based
  const char* function;   ///< the function's name
  const char* signature;  ///< the function's full signature
};

}  // namespace SnagtrapUtil

/// The current function as a place of report, at a fixed line of a source file that is not this one: a check keeps the
/// file under which support staff know it.
#define ZD_LOCATION_IN(file, line) (::SnagtrapUtil::SourceLocation{(file), (line), __func__, __PRETTY_FUNCTION__})

/// The current function as a place of report, at a fixed line.
#define ZD_LOCATION_AT(line) ZD_LOCATION_IN(__FILE_NAME__, (line))

/// The current function as a place of report, at the line where this stands.
#define ZD_LOCATION ZD_LOCATION_AT(__LINE__)
