#include "IgnoredPlaces.h"

#include "Settings.h"

namespace snagtrap {

namespace {

std::wstring ignored_key() { return std::wstring(settings_key) + L"\\Ignored"; }

std::wstring value_name(const Place& place) { return place.file + L'(' + std::to_wstring(place.line) + L')'; }

}  // namespace

bool is_ignored(const Place& place) {
  return RegGetValueW(HKEY_CURRENT_USER, ignored_key().c_str(), value_name(place).c_str(), RRF_RT_REG_DWORD, nullptr,
                      nullptr, nullptr) == ERROR_SUCCESS;
}

LSTATUS always_ignore(const Place& place) {
  const DWORD ignored = 1;
  return RegSetKeyValueW(HKEY_CURRENT_USER, ignored_key().c_str(), value_name(place).c_str(), REG_DWORD, &ignored,
                         sizeof ignored);
}

void forget_ignored_places() { RegDeleteTreeW(HKEY_CURRENT_USER, ignored_key().c_str()); }

}  // namespace snagtrap
