#include "TemporaryFolder.h"

#include <windows.h>

#include <fstream>
#include <iterator>

namespace test_support {

TemporaryFolder::TemporaryFolder(const std::wstring& name) {
  static int folders = 0;
  path_ = std::filesystem::temp_directory_path() /
          (name + L' ' + std::to_wstring(GetCurrentProcessId()) + L' ' + std::to_wstring(++folders));
  std::filesystem::remove_all(path_);
  std::filesystem::create_directories(path_);
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code left_behind;
  std::filesystem::remove_all(path_, left_behind);
}

std::string read_bytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

void write_bytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace test_support
