#pragma once

#include <filesystem>
#include <string>

/// Creates an empty folder; the destructor removes it with its content.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  const std::filesystem::path& path() const { return path_; }

 private:
  std::filesystem::path path_;
};

std::string read_bytes(const std::filesystem::path& path);
void write_bytes(const std::filesystem::path& path, const std::string& bytes);
