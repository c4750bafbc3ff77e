#pragma once

#include <filesystem>
#include <string>

namespace test_support {

/// Creates an empty folder below the system's temporary files; the destructor removes it with its content.
class TemporaryFolder {
 public:
  /// The folder's name begins with `name`. Throws `std::filesystem::filesystem_error`.
  explicit TemporaryFolder(const std::wstring& name = L"zd");
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

/// The content of a file; empty when it cannot be read.
std::string read_bytes(const std::filesystem::path& path);
void write_bytes(const std::filesystem::path& path, const std::string& bytes);

}  // namespace test_support
