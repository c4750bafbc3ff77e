#include "ModuleInstance.h"

#include <comdef.h>

#include "LastFailure.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace platform {

HINSTANCE module_instance() noexcept { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

std::wstring module_file_name() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(module_instance(), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) throw _com_error(SnagtrapUtil::last_failure());
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

}  // namespace platform
