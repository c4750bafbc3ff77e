#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "Progress.h"

namespace workbench {

/// The bytes of a file; nothing if it cannot be read. `progress` may cancel it with `schedule::Cancelled`.
std::optional<std::string> try_read_file(const std::filesystem::path& path, const schedule::Progress& progress = {});

/// Replaces the file's content with these bytes. Returns false, and leaves the file as it was, if that fails. The file
/// also stays as it was when `progress` throws `schedule::Cancelled`.
bool try_write_file(const std::filesystem::path& path, std::string_view bytes, const schedule::Progress& progress = {});

/// Which files a dialog shows: the text of its filter and the ending that a name without one gets.
struct FileKind {
  UINT filter;
  const wchar_t* ending;
};

/// How the user is asked for a file; nothing when the dialog is cancelled.
struct FileDialogs {
  std::function<std::optional<std::filesystem::path>(HWND owner, const FileKind& kind)> ask_to_open;
  std::function<std::optional<std::filesystem::path>(HWND owner, const FileKind& kind)> ask_to_save;
};

/// The dialogs of the system.
FileDialogs system_file_dialogs();

}  // namespace workbench
