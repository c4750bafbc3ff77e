#pragma once

namespace SnagtrapUtil {

/// The place in the sources that a report names. Support staff search for file and line, so places whose line is fixed
/// carry a named constant instead of the line they happen to stand at. All texts live as long as the program.
struct SourcePlace {
  const char* file;       ///< file name with extension, without folder
  int line;               ///< 1-based
  const char* function;   ///< the function's name
  const char* signature;  ///< the function's full signature
};

}  // namespace SnagtrapUtil

/// The current function as a place of report, at a fixed line.
#define ZD_PLACE_AT(line) (::SnagtrapUtil::SourcePlace{__FILE_NAME__, (line), __func__, __PRETTY_FUNCTION__})

/// The current function as a place of report, at the line where this stands.
#define ZD_PLACE ZD_PLACE_AT(__LINE__)
