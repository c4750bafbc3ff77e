#pragma once

#include <filesystem>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <vector>

#include "TemporaryFolder.h"

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

/// The folder of a log. Its name has a space and characters outside the code page.
class LogFolder {
 public:
  const std::filesystem::path& path() const { return folder_.path(); }

  /// The growing file for age 0; else the rotated file with that number.
  std::filesystem::path file(int age = 0) const {
    return path() / (age == 0 ? L"Snagtrap.jsonl" : L"Snagtrap." + std::to_wstring(age) + L".jsonl");
  }

  std::string content(int age = 0) const { return test_support::read_bytes(file(age)); }

  std::vector<nlohmann::json> lines() const { return read_json_lines(content()); }

  std::size_t file_count() const {
    return static_cast<std::size_t>(
        std::distance(std::filesystem::directory_iterator(path()), std::filesystem::directory_iterator()));
  }

 private:
  test_support::TemporaryFolder folder_{L"zd snagtrap \u65e5\u5fd7"};
};

}  // namespace snagtrap_test
