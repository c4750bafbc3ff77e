#include "Console.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <type_traits>

#include "TextEncoding.h"

namespace workbench {

namespace {

/// A program with a window is not attached to the console of the shell that started it.
HANDLE standard_handle(DWORD which) {
  HANDLE handle = GetStdHandle(which);
  if (handle || !AttachConsole(ATTACH_PARENT_PROCESS)) return handle;
  return GetStdHandle(which);
}

bool write_bytes(HANDLE file, std::string_view bytes) {
  while (!bytes.empty()) {
    DWORD written = 0;
    if (!WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) || written == 0)
      return false;
    bytes.remove_prefix(written);
  }
  return true;
}

/// A console takes only so much at once.
bool write_to_console(HANDLE console, std::wstring_view text) {
  constexpr DWORD most_units = 8192;
  while (!text.empty()) {
    const DWORD count = std::min(most_units, static_cast<DWORD>(text.size()));
    if (!WriteConsoleW(console, text.data(), count, nullptr, nullptr)) return false;
    text.remove_prefix(count);
  }
  return true;
}

/// `text` is UTF-16 or UTF-8.
template <class Text>
bool write(DWORD which, Text text) {
  HANDLE handle = standard_handle(which);
  if (!handle || handle == INVALID_HANDLE_VALUE) return false;
  DWORD mode = 0;
  const bool is_console = GetConsoleMode(handle, &mode);
  if constexpr (std::is_same_v<Text, std::string_view>)
    return is_console ? write_to_console(handle, base::from_utf8(text)) : write_bytes(handle, text);
  else
    return is_console ? write_to_console(handle, text) : write_bytes(handle, base::to_utf8(text));
}

}  // namespace

bool write_output(std::wstring_view text) { return write(STD_OUTPUT_HANDLE, text); }

bool write_error(std::wstring_view text) { return write(STD_ERROR_HANDLE, text); }

bool write_output_utf8(std::string_view text) { return write(STD_OUTPUT_HANDLE, text); }

}  // namespace workbench
