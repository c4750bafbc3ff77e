#include "IgnoredLocations.h"

#include "Settings.h"

namespace snagtrap {

namespace {

std::wstring ignored_key() { return std::wstring(settings_key) + L"\\Ignored"; }

std::wstring value_name(const Location& location) {
  return location.file + L'(' + std::to_wstring(location.line) + L')';
}

}  // namespace

bool is_ignored(const Location& location) {
  return RegGetValueW(HKEY_CURRENT_USER, ignored_key().c_str(), value_name(location).c_str(), RRF_RT_REG_DWORD, nullptr,
                      nullptr, nullptr) == ERROR_SUCCESS;
}

LSTATUS always_ignore(const Location& location) {
  const DWORD ignored = 1;
  return RegSetKeyValueW(HKEY_CURRENT_USER, ignored_key().c_str(), value_name(location).c_str(), REG_DWORD, &ignored,
                         sizeof ignored);
}

void forget_ignored_locations() { RegDeleteTreeW(HKEY_CURRENT_USER, ignored_key().c_str()); }

}  // namespace snagtrap
