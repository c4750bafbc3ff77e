#include "UserSettings.h"

#include <objbase.h>
#include <windows.h>
#include <comdef.h>
#include <shlobj.h>

#include "Hresult.h"
#include "Owned.h"
#include "ZdVersion.h"
#include "resource.h"

namespace workbench {

namespace {

#define WB_WIDE_TEXT(text) L##text
#define WB_WIDE(text) WB_WIDE_TEXT(text)

}  // namespace

std::wstring settings_path() { return L"SOFTWARE\\" WB_WIDE(WB_COMPANY) L"\\" WB_WIDE(WB_PRODUCT); }

void create_settings_key() noexcept {
  base::RegistryKey key;
  RegCreateKeyExW(HKEY_CURRENT_USER, settings_path().c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr);
}

std::filesystem::path default_store() {
  base::OwnedBy<wchar_t*, &CoTaskMemFree> folder;
  base::throw_if_failed(SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, folder.put()));
  return std::filesystem::path(folder.get()) / WB_WIDE(WB_COMPANY) / WB_WIDE(WB_PRODUCT) / L"rules.db";
}

std::wstring program_version() { return WB_WIDE(ZD_VERSION); }

}  // namespace workbench
