#pragma once

#include <string>
#include <vector>

namespace workbench {

/// The names of the stores that the user opened last, see `find_store`, the last one first. They are kept in the user's
/// settings; what cannot be read there is left out.
std::vector<std::wstring> recent_stores();

/// Puts a store in front of them. A failure is not reported, because the store is open all the same.
void remember_store(const std::wstring& name);

}  // namespace workbench
