#include "Files.h"

#include <windows.h>
#include <commdlg.h>

#include <algorithm>

#include "Owned.h"
#include "Texts.h"

namespace workbench {

namespace {

constexpr DWORD longest_path = 32768;
constexpr size_t bytes_of_a_part = 1 << 20;

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

bool write_new_file(const std::filesystem::path& path, std::string_view bytes, const schedule::Progress& progress) {
  const base::FileHandle file(
      CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file) return false;
  for (size_t done = 0; done < bytes.size();) {
    schedule::advance(progress, done, bytes.size());
    const auto part = static_cast<DWORD>(std::min(bytes.size() - done, bytes_of_a_part));
    DWORD written = 0;
    if (!WriteFile(file.get(), bytes.data() + done, part, &written, nullptr) || written != part) return false;
    done += part;
  }
  return true;
}

/// A file that is deleted at the end unless it has become another one.
class UnfinishedFile {
 public:
  explicit UnfinishedFile(const std::filesystem::path& finished) : path_(finished.wstring() + L".part") {}
  ~UnfinishedFile() { DeleteFileW(path_.c_str()); }
  UnfinishedFile(const UnfinishedFile&) = delete;
  UnfinishedFile& operator=(const UnfinishedFile&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

}  // namespace

std::optional<std::string> try_read_file(const std::filesystem::path& path, const schedule::Progress& progress) {
  const base::FileHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                          OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!file) return std::nullopt;
  LARGE_INTEGER size{};
  GetFileSizeEx(file.get(), &size);
  std::string bytes;
  char part[65536];
  for (DWORD read = 0;;) {
    // A file may grow meanwhile, and what is no file has no size.
    schedule::advance(progress, bytes.size(), std::max(bytes.size(), static_cast<size_t>(size.QuadPart)));
    if (!ReadFile(file.get(), part, sizeof(part), &read, nullptr)) return std::nullopt;
    if (read == 0) return bytes;
    bytes.append(part, read);
  }
}

bool try_write_file(const std::filesystem::path& path, std::string_view bytes, const schedule::Progress& progress) {
  const UnfinishedFile unfinished(path);
  return write_new_file(unfinished.path(), bytes, progress) &&
         MoveFileExW(unfinished.path().c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
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
