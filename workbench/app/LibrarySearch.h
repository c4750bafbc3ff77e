#pragma once

#include <string>

namespace workbench {

/// From now on this process finds libraries that are loaded by name only beside the program and in the system's folder,
/// neither in the current folder nor along PATH, where other people may write. The plug-in loads two by name. Throws
/// `_com_error`.
void limit_library_search();

/// The names of those of the two libraries that are not beside the program, divided by commas; empty when both are. The
/// plug-in works without them, but shows no texts of the host's and writes no reports. Throws as
/// `base::path_beside_program` does.
std::wstring missing_libraries();

}  // namespace workbench
