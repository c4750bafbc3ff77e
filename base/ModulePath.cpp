#include "ModulePath.h"

#include "Hresult.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace base {

HINSTANCE module_instance() noexcept { return reinterpret_cast<HINSTANCE>(&__ImageBase); }

std::wstring_view module_file_name(HMODULE module, std::span<wchar_t> buffer) noexcept {
  return {buffer.data(), GetModuleFileNameW(module, buffer.data(), static_cast<DWORD>(buffer.size()))};
}

std::wstring module_file_name(HMODULE module) {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const std::size_t length = module_file_name(module, path).size();
    if (length == 0) throw_last_failure();
    if (length < path.size()) {
      path.resize(length);
      return path;
    }
    path.resize(path.size() * 2);
  }
}

std::wstring path_beside_program(std::wstring_view file_name) {
  std::wstring path = module_file_name(nullptr);
  path.resize(path.rfind(L'\\') + 1);
  return path.append(file_name);
}

}  // namespace base
