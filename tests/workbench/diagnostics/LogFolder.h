#pragma once

#include <windows.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

namespace snagtrap_test {

/// The lines of a log, each read as JSON. Throws when one is not JSON or when the last has no end.
inline std::vector<nlohmann::json> read_json_lines(std::string_view text) {
  std::vector<nlohmann::json> lines;
  while (!text.empty()) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) throw std::runtime_error("the last line has no end");
    lines.push_back(nlohmann::json::parse(text.substr(0, end)));
    text.remove_prefix(end + 1);
  }
  return lines;
}

/// An empty folder, removed with its content by the destructor. Its name has a space and characters outside the code
/// page.
class LogFolder {
 public:
  LogFolder()
      : path_(std::filesystem::temp_directory_path() /
              (L"zd snagtrap \u65e5\u5fd7 " + std::to_wstring(GetCurrentProcessId()))) {
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~LogFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  LogFolder(const LogFolder&) = delete;
  LogFolder& operator=(const LogFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  /// The growing file for age 0; else the rotated file with that number.
  std::filesystem::path file(int age = 0) const {
    return path_ / (age == 0 ? L"Snagtrap.jsonl" : L"Snagtrap." + std::to_wstring(age) + L".jsonl");
  }

  std::string content(int age = 0) const {
    std::ifstream stream(file(age), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

  std::vector<nlohmann::json> lines() const { return read_json_lines(content()); }

  std::size_t file_count() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(path_), std::filesystem::directory_iterator()));
  }

 private:
  std::filesystem::path path_;
};

}  // namespace snagtrap_test
