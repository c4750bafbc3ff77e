#include "Console.h"

#include <windows.h>

#include <string>

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

bool write(DWORD which, std::wstring_view text) {
  HANDLE handle = standard_handle(which);
  if (!handle || handle == INVALID_HANDLE_VALUE) return false;
  DWORD mode = 0;
  if (!GetConsoleMode(handle, &mode)) return write_bytes(handle, base::to_utf8(text));
  return WriteConsoleW(handle, text.data(), static_cast<DWORD>(text.size()), nullptr, nullptr);
}

}  // namespace

bool write_output(std::wstring_view text) { return write(STD_OUTPUT_HANDLE, text); }

bool write_error(std::wstring_view text) { return write(STD_ERROR_HANDLE, text); }

}  // namespace workbench
