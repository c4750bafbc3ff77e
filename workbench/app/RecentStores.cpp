#include "RecentStores.h"

#include <windows.h>

#include "UserSettings.h"
#include "resource.h"

namespace workbench {

namespace {

constexpr wchar_t value_name[] = L"RecentStores";
constexpr std::size_t most_stores = IDM_LAST_RECENT_STORE - IDM_FIRST_RECENT_STORE + 1;

}  // namespace

std::vector<std::wstring> recent_stores() {
  DWORD size = 0;
  if (RegGetValueW(HKEY_CURRENT_USER, settings_path().c_str(), value_name, RRF_RT_REG_MULTI_SZ, nullptr, nullptr,
                   &size) != ERROR_SUCCESS)
    return {};
  std::wstring lines(size / sizeof(wchar_t), L'\0');
  if (RegGetValueW(HKEY_CURRENT_USER, settings_path().c_str(), value_name, RRF_RT_REG_MULTI_SZ, nullptr, lines.data(),
                   &size) != ERROR_SUCCESS)
    return {};
  std::vector<std::wstring> names;
  for (const wchar_t* line = lines.c_str(); *line != L'\0' && names.size() < most_stores;
       line += names.back().size() + 1)
    names.emplace_back(line);
  return names;
}

void remember_store(const std::wstring& name) {
  std::vector<std::wstring> names = recent_stores();
  std::erase(names, name);
  names.insert(names.begin(), name);
  if (names.size() > most_stores) names.resize(most_stores);
  std::wstring lines;
  for (const std::wstring& each : names) lines += each + L'\0';
  lines += L'\0';
  RegSetKeyValueW(HKEY_CURRENT_USER, settings_path().c_str(), value_name, REG_MULTI_SZ, lines.data(),
                  static_cast<DWORD>(lines.size() * sizeof(wchar_t)));
}

}  // namespace workbench
