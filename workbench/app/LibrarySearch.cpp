#include "LibrarySearch.h"

#include <windows.h>

#include "Hresult.h"

namespace workbench {

void limit_library_search() {
  if (!SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS)) base::throw_last_failure();
}

}  // namespace workbench
