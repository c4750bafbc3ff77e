#include "Files.h"

#include <windows.h>
#include <commdlg.h>

#include <algorithm>

#include "Owned.h"
#include "Texts.h"

namespace workbench {

namespace {

constexpr DWORD longest_path = 32768;

std::optional<std::filesystem::path> ask_for_file(HWND owner, const FileKind& kind, DWORD flags,
                                                  BOOL(WINAPI* ask)(LPOPENFILENAMEW)) {
  // In the text a bar stands for the null characters of a filter.
  std::wstring filter = text(kind.filter) + L'|';
  std::ranges::replace(filter, L'|', L'\0');
  std::wstring path(longest_path, L'\0');
  OPENFILENAMEW request{};
  request.lStructSize = sizeof(request);
  request.hwndOwner = owner;
  request.lpstrFilter = filter.c_str();
  request.lpstrFile = path.data();
  request.nMaxFile = longest_path;
  request.lpstrDefExt = kind.ending;
  request.Flags = flags | OFN_NOCHANGEDIR | OFN_HIDEREADONLY | OFN_PATHMUSTEXIST;
  if (!ask(&request)) return std::nullopt;
  return std::filesystem::path(path.c_str());
}

bool write_new_file(const std::filesystem::path& path, std::string_view bytes) {
  const base::FileHandle file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  return file && WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
         written == bytes.size();
}

}  // namespace

std::optional<std::string> try_read_file(const std::filesystem::path& path) {
  const base::FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return std::nullopt;
  std::string bytes;
  char part[65536];
  for (DWORD read = 0;;) {
    if (!ReadFile(file.get(), part, sizeof(part), &read, nullptr)) return std::nullopt;
    if (read == 0) return bytes;
    bytes.append(part, read);
  }
}

bool try_write_file(const std::filesystem::path& path, std::string_view bytes) {
  const std::filesystem::path unfinished = path.wstring() + L".part";
  bool done = write_new_file(unfinished, bytes);
  done = done && MoveFileExW(unfinished.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
  if (!done) DeleteFileW(unfinished.c_str());
  return done;
}

FileDialogs system_file_dialogs() {
  return {.ask_to_open =
              [](HWND owner, const FileKind& kind) {
                return ask_for_file(owner, kind, OFN_FILEMUSTEXIST, &GetOpenFileNameW);
              },
          .ask_to_save =
              [](HWND owner, const FileKind& kind) {
                return ask_for_file(owner, kind, OFN_OVERWRITEPROMPT, &GetSaveFileNameW);
              }};
}

}  // namespace workbench
