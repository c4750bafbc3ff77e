#include "RuleChange.h"

#include <windows.h>
#include <lmcons.h>

#include <array>
#include <cwchar>

namespace workbench {

std::wstring process_user() {
  std::array<wchar_t, UNLEN + 1> name{};
  auto size = static_cast<DWORD>(name.size());
  return GetUserNameW(name.data(), &size) ? std::wstring(name.data()) : std::wstring();
}

std::wstring present_time() {
  SYSTEMTIME now{};
  GetSystemTime(&now);
  std::array<wchar_t, 32> text{};
  std::swprintf(text.data(), text.size(), L"%04d-%02d-%02dT%02d:%02d:%02d.%03dZ", now.wYear, now.wMonth, now.wDay,
                now.wHour, now.wMinute, now.wSecond, now.wMilliseconds);
  return text.data();
}

}  // namespace workbench
