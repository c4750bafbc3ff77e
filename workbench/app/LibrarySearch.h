#pragma once

namespace workbench {

/// From now on this process finds libraries that are loaded by name only beside the program and in the system's folder,
/// neither in the current folder nor along PATH, where other people may write. The plug-in loads two by name. Throws
/// `_com_error`.
void limit_library_search();

}  // namespace workbench
