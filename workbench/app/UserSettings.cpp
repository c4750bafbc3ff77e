#include "UserSettings.h"

#include <objbase.h>
#include <windows.h>
#include <comdef.h>
#include <shlobj.h>

#include <memory>

#include "Errors.h"
#include "Handles.h"
#include "ZdVersion.h"
#include "resource.h"

namespace workbench {

namespace {

#define WB_WIDE_TEXT(text) L##text
#define WB_WIDE(text) WB_WIDE_TEXT(text)

struct TaskMemoryRelease {
  void operator()(wchar_t* memory) const noexcept { CoTaskMemFree(memory); }
};

}  // namespace

std::wstring settings_path() { return L"SOFTWARE\\" WB_WIDE(WB_COMPANY) L"\\" WB_WIDE(WB_PRODUCT); }

void make_settings_key() noexcept {
  HKEY key = nullptr;
  RegCreateKeyExW(HKEY_CURRENT_USER, settings_path().c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
  const OwnedKey owner(key);
}

std::filesystem::path default_store() {
  wchar_t* folder = nullptr;
  const HRESULT found = SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, &folder);
  const std::unique_ptr<wchar_t, TaskMemoryRelease> owner(folder);
  throw_if_failed(found);
  return std::filesystem::path(folder) / WB_WIDE(WB_COMPANY) / WB_WIDE(WB_PRODUCT) / L"rules.db";
}

std::wstring program_version() { return WB_WIDE(ZD_VERSION); }

}  // namespace workbench
