// Creates the module's class by its identifier as a program does that has nothing but the registry to find it by, calls
// it, loads its type library by identifier, and prints the files of both and the version of the first.
#include <windows.h>

// The generated header defines the identifier of the library then.
#include <initguid.h>

#include <cstdio>
#include <vector>

#include "zdExpirationRules_h.h"

namespace {

bool print_module() {
  wchar_t file[MAX_PATH] = {};
  const DWORD length = GetModuleFileNameW(GetModuleHandleW(L"zdExpirationRules.dll"), file, MAX_PATH);
  std::vector<char> block(length ? GetFileVersionInfoSizeW(file, nullptr) : 0);
  VS_FIXEDFILEINFO* version = nullptr;
  UINT size = 0;
  if (block.empty() || !GetFileVersionInfoW(file, 0, static_cast<DWORD>(block.size()), block.data()) ||
      !VerQueryValueW(block.data(), L"\\", reinterpret_cast<void**>(&version), &size))
    return false;
  std::printf("%ls %d.%d.%d.%d\n", file, HIWORD(version->dwFileVersionMS), LOWORD(version->dwFileVersionMS),
              HIWORD(version->dwFileVersionLS), LOWORD(version->dwFileVersionLS));
  return true;
}

int failed(const char* what, HRESULT result) {
  std::printf("%s %08lX\n", what, static_cast<unsigned long>(result));
  return 1;
}

}  // namespace

int main() {
  CoInitialize(nullptr);
  IkvPlugin* plugin = nullptr;
  HRESULT result = CoCreateInstance(__uuidof(CzdExpirationRulePlugin), nullptr, CLSCTX_INPROC_SERVER,
                                    __uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin));
  if (FAILED(result)) return failed("CoCreateInstance", result);
  result = plugin->OnSelectionChanged(nullptr);
  if (FAILED(result)) return failed("OnSelectionChanged", result);
  if (!print_module()) return failed("version", HRESULT_FROM_WIN32(GetLastError()));
  plugin->Release();

  BSTR library = nullptr;
  result = QueryPathOfRegTypeLib(LIBID_zdExpirationRules, 1, 0, 0, &library);
  if (FAILED(result)) return failed("QueryPathOfRegTypeLib", result);
  std::printf("%ls\n", library);
  SysFreeString(library);
  CoUninitialize();
  return 0;
}
