#include "Console.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <type_traits>

#include "Owned.h"
#include "TextEncoding.h"

namespace workbench {

namespace {

/// A program with a window is not attached to the console of the shell that started it.
HANDLE standard_handle(DWORD which) {
  HANDLE handle = GetStdHandle(which);
  if (handle || !AttachConsole(ATTACH_PARENT_PROCESS)) return handle;
  return GetStdHandle(which);
}

constexpr size_t units_of_a_part = 8192;  // a console takes only so much at once

bool write_bytes(HANDLE file, std::string_view bytes, const schedule::Progress& progress) {
  for (size_t done = 0; done < bytes.size();) {
    schedule::advance(progress, done, bytes.size());
    const size_t part = std::min(units_of_a_part, bytes.size() - done);
    DWORD written = 0;
    if (!WriteFile(file, bytes.data() + done, static_cast<DWORD>(part), &written, nullptr) || written == 0)
      return false;
    done += written;
  }
  return true;
}

bool write_to_console(HANDLE console, std::wstring_view text, const schedule::Progress& progress) {
  for (size_t done = 0; done < text.size(); done += units_of_a_part) {
    schedule::advance(progress, done, text.size());
    const std::wstring_view part = text.substr(done, units_of_a_part);
    if (!WriteConsoleW(console, part.data(), static_cast<DWORD>(part.size()), nullptr, nullptr)) return false;
  }
  return true;
}

bool is_console(HANDLE handle) {
  DWORD mode = 0;
  return GetConsoleMode(handle, &mode) != FALSE;
}

/// `text` is UTF-16 or UTF-8.
template <class Text>
bool write(DWORD which, Text text, const schedule::Progress& progress) {
  HANDLE handle = standard_handle(which);
  if (!handle || handle == INVALID_HANDLE_VALUE) return false;
  if constexpr (std::is_same_v<Text, std::string_view>)
    return is_console(handle) ? write_to_console(handle, base::from_utf8(text), progress)
                              : write_bytes(handle, text, progress);
  else
    return is_console(handle) ? write_to_console(handle, text, progress)
                              : write_bytes(handle, base::to_utf8(text), progress);
}

base::FileHandle open_console(const wchar_t* name) {
  return base::FileHandle(CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
}

bool is_console_program() {
  const auto* image = reinterpret_cast<const BYTE*>(GetModuleHandleW(nullptr));
  const auto* header = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
  const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + header->e_lfanew);
  return headers->OptionalHeader.Subsystem == IMAGE_SUBSYSTEM_WINDOWS_CUI;
}

/// Set by Ctrl+C, on a thread of the system.
std::atomic<bool> interrupted = false;

BOOL WINAPI on_interrupt(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  interrupted = true;
  return TRUE;
}

/// For a scope, the console does not echo keys, and Ctrl+C does not end the program, which would leave the echo off.
class ScopedSilentInput {
 public:
  explicit ScopedSilentInput(HANDLE input) : input_(input) {
    interrupted = false;
    SetConsoleCtrlHandler(&on_interrupt, TRUE);
    GetConsoleMode(input_, &mode_);
    SetConsoleMode(input_, mode_ & ~DWORD{ENABLE_LINE_INPUT | ENABLE_ECHO_INPUT});
  }
  ScopedSilentInput(const ScopedSilentInput&) = delete;
  ScopedSilentInput& operator=(const ScopedSilentInput&) = delete;
  ~ScopedSilentInput() {
    SetConsoleMode(input_, mode_);
    SetConsoleCtrlHandler(&on_interrupt, FALSE);
  }

 private:
  HANDLE input_;
  DWORD mode_ = 0;
};

/// The character of a key press; null for anything else. A character that is typed by its number with the Alt key
/// arrives when Alt is released.
wchar_t typed_character(const INPUT_RECORD& record) {
  if (record.EventType != KEY_EVENT) return L'\0';
  const KEY_EVENT_RECORD& key = record.Event.KeyEvent;
  return key.bKeyDown || key.wVirtualKeyCode == VK_MENU ? key.uChar.UnicodeChar : L'\0';
}

std::optional<std::wstring> read_line(HANDLE input) {
  constexpr DWORD period_ms = 100;
  constexpr wchar_t rubout = 0x7F;
  std::wstring line;
  while (!interrupted) {
    const DWORD waited = WaitForSingleObject(input, period_ms);
    if (waited == WAIT_TIMEOUT) continue;
    INPUT_RECORD record{};
    DWORD read = 0;
    if (waited != WAIT_OBJECT_0 || !ReadConsoleInputW(input, &record, 1, &read) || read == 0) return std::nullopt;
    const wchar_t character = typed_character(record);
    if (character == L'\r') return line;
    if (character == L'\b' || character == rubout) {
      if (!line.empty()) line.pop_back();
    } else if (character != L'\0') {
      line += character;
    }
  }
  return std::nullopt;
}

/// Set by Ctrl+C, on a thread of the system.
std::atomic<bool> cancelled = false;

BOOL WINAPI on_console_event(DWORD event) {
  if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) return FALSE;
  cancelled = true;
  return TRUE;
}

}  // namespace

bool write_output(std::wstring_view text, const schedule::Progress& progress) {
  return write(STD_OUTPUT_HANDLE, text, progress);
}

bool write_error(std::wstring_view text) { return write(STD_ERROR_HANDLE, text, {}); }

bool write_output_utf8(std::string_view text, const schedule::Progress& progress) {
  return write(STD_OUTPUT_HANDLE, text, progress);
}

bool is_output_on_console() { return is_console(standard_handle(STD_OUTPUT_HANDLE)); }

bool is_error_on_console() { return is_console(standard_handle(STD_ERROR_HANDLE)); }

bool can_read_secret() { return is_console_program() && open_console(L"CONIN$") && open_console(L"CONOUT$"); }

std::optional<std::wstring> read_secret(const std::wstring& prompt) {
  const base::FileHandle input = open_console(L"CONIN$");
  const base::FileHandle output = open_console(L"CONOUT$");
  const ScopedSilentInput silent(input.get());
  write_to_console(output.get(), prompt, {});
  std::optional<std::wstring> line = read_line(input.get());
  write_to_console(output.get(), L"\n", {});
  return line;
}

ConsoleProgress::ConsoleProgress() { SetConsoleCtrlHandler(&on_console_event, TRUE); }

ConsoleProgress::~ConsoleProgress() { SetConsoleCtrlHandler(&on_console_event, FALSE); }

schedule::Progress ConsoleProgress::part(std::size_t first, std::size_t last) {
  return schedule::part_of(
      [this](std::size_t done, std::size_t all) {
        return show(all == 0 ? 0 : static_cast<double>(done) / static_cast<double>(all));
      },
      first, last);
}

schedule::Progress ConsoleProgress::output_part(std::size_t first, std::size_t last) {
  if (!is_output_on_console()) return part(first, last);
  return [](std::size_t, std::size_t) { return !is_cancelled(); };
}

schedule::Progress ConsoleProgress::same() {
  return [this](std::size_t, std::size_t) { return show(share_); };
}

bool ConsoleProgress::is_cancelled() noexcept { return cancelled; }

bool ConsoleProgress::show(double share) {
  share_ = std::max(share_, share);
  const auto now = std::chrono::steady_clock::now();
  if (is_visible_ && now - shown_ >= std::chrono::seconds(1)) {
    shown_ = now;
    write_error(std::to_wstring(static_cast<int>(share_ * 100)) + L" %\n");
  }
  return !cancelled;
}

}  // namespace workbench
