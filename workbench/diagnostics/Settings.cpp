#include "Settings.h"

#include <objbase.h>
#include <knownfolders.h>
#include <shlobj.h>

#include <algorithm>
#include <cwchar>

#include "Owned.h"

namespace snagtrap {

namespace {

constexpr DWORD smallest_log = 4096;
constexpr DWORD most_kept_logs = 99;

DWORD read_number(const wchar_t* name, DWORD otherwise) noexcept {
  DWORD value = 0;
  DWORD size = sizeof value;
  const LSTATUS read = RegGetValueW(HKEY_CURRENT_USER, settings_key, name, RRF_RT_REG_DWORD, nullptr, &value, &size);
  return read == ERROR_SUCCESS ? value : otherwise;
}

std::wstring read_text(const wchar_t* name) {
  DWORD size = 0;
  if (RegGetValueW(HKEY_CURRENT_USER, settings_key, name, RRF_RT_REG_SZ, nullptr, nullptr, &size) != ERROR_SUCCESS) {
    return {};
  }
  std::wstring text(size / sizeof(wchar_t), L'\0');
  const LSTATUS read = RegGetValueW(HKEY_CURRENT_USER, settings_key, name, RRF_RT_REG_SZ, nullptr, text.data(), &size);
  if (read != ERROR_SUCCESS) return {};
  text.resize(std::wcslen(text.c_str()));
  return text;
}

}  // namespace

Settings read_settings() {
  Settings settings;
  settings.log_directory = read_text(L"LogDirectory");
  settings.interactive = read_number(L"Interactive", settings.interactive) != 0;
  settings.trace_enabled = read_number(L"TraceEnabled", settings.trace_enabled) != 0;
  settings.max_log_bytes = std::max(read_number(L"MaxLogBytes", settings.max_log_bytes), smallest_log);
  settings.kept_logs = std::min(read_number(L"KeptLogs", settings.kept_logs), most_kept_logs);
  return settings;
}

std::wstring default_log_directory() {
  base::OwnedBy<wchar_t*, &CoTaskMemFree> folder;
  const HRESULT found = SHGetKnownFolderPath(FOLDERID_LocalAppData, 0, nullptr, folder.put());
  if (FAILED(found) || !folder || !*folder.get()) return {};
  return folder.get() + std::wstring(L"\\Orvane\\Snagtrap\\Logs");
}

}  // namespace snagtrap
