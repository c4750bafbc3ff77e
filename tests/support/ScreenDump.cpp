#include "ScreenDump.h"

#include <windows.h>

#include <string>

#include "TextEncoding.h"

namespace test_support {
namespace {

constexpr UINT response_time_ms = 200;

/// The text as the window returns it; when its thread does not respond, the text that the system stores.
std::string text_of(HWND window) {
  wchar_t text[512] = L"";
  DWORD_PTR length = 0;
  if (!SendMessageTimeoutW(window, WM_GETTEXT, ARRAYSIZE(text), reinterpret_cast<LPARAM>(text),
                           SMTO_ABORTIFHUNG | SMTO_BLOCK, response_time_ms, &length)) {
    InternalGetWindowText(window, text, ARRAYSIZE(text));
  }
  return base::to_utf8(text);
}

std::string class_text(HWND window) {
  wchar_t name[256] = L"";
  GetClassNameW(window, name, ARRAYSIZE(name));
  return base::to_utf8(name);
}

void dump_window(HWND window, const char* indent, std::FILE* out) {
  RECT rect{};
  GetWindowRect(window, &rect);
  std::fprintf(out, "%s%s \"%s\" id %d (%ld,%ld)-(%ld,%ld)%s%s\n", indent, class_text(window).c_str(),
               text_of(window).c_str(), GetDlgCtrlID(window), rect.left, rect.top, rect.right, rect.bottom,
               IsWindowVisible(window) ? "" : " hidden", IsWindowEnabled(window) ? "" : " disabled");
}

BOOL CALLBACK dump_child(HWND window, LPARAM out) {
  dump_window(window, "    ", reinterpret_cast<std::FILE*>(out));
  return TRUE;
}

BOOL CALLBACK dump_top_level(HWND window, LPARAM out) {
  DWORD process = 0;
  GetWindowThreadProcessId(window, &process);
  if (process != GetCurrentProcessId()) return TRUE;
  dump_window(window, "  ", reinterpret_cast<std::FILE*>(out));
  EnumChildWindows(window, dump_child, out);
  return TRUE;
}

}  // namespace

void dump_screen(std::FILE* out) { EnumWindows(dump_top_level, reinterpret_cast<LPARAM>(out)); }

}  // namespace test_support
