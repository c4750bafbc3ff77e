#include "LibrarySearch.h"

#include <windows.h>

#include <filesystem>

#include "Hresult.h"
#include "ModulePath.h"

namespace workbench {

void limit_library_search() {
  if (!SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS)) base::throw_last_failure();
}

std::wstring missing_libraries() {
  std::wstring missing;
  for (const wchar_t* name : {L"zdCommonRes.DLL", L"SnagtrapUtil3.0_x64.dll"}) {
    std::error_code unreadable;
    if (std::filesystem::exists(base::path_beside_program(name), unreadable)) continue;
    if (!missing.empty()) missing += L", ";
    missing += name;
  }
  return missing;
}

}  // namespace workbench
