#include "DocumentedNumbers.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "ChildProcess.h"
#include "ModulePath.h"

namespace faults_test {
namespace {

/// The cells of a line of a table, without the blanks around them.
std::vector<std::string> cells(const std::string& line) {
  std::vector<std::string> found;
  for (std::size_t start = line.find('|'); start != std::string::npos;) {
    const std::size_t end = line.find('|', start + 1);
    if (end == std::string::npos) break;
    std::string cell = line.substr(start + 1, end - start - 1);
    cell.erase(0, cell.find_first_not_of(' '));
    cell.erase(cell.find_last_not_of(' ') + 1);
    found.push_back(cell);
    start = end;
  }
  return found;
}

}  // namespace

std::size_t documented_number(const std::string& heading, const std::string& scenario, std::size_t column) {
  const std::string label = scenario == "together" ? "**together**" : '`' + scenario + '`';
  std::ifstream page(std::filesystem::path(base::path_beside_program(L"faults.md")));
  bool below = false;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("## ")) below = line == "## " + heading;
    const std::vector<std::string> row = below ? cells(line) : std::vector<std::string>();
    if (row.size() <= column + 1 || row.front() != label) continue;
    std::string number = row[column + 1];
    if (number.find_first_not_of("0123456789,") != std::string::npos) continue;
    number.erase(std::remove(number.begin(), number.end(), ','), number.end());
    return std::stoul(number);
  }
  throw std::runtime_error("the page on faults does not count " + scenario + " below " + heading);
}

}  // namespace faults_test
