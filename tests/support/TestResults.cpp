#include "TestResults.h"

namespace test_support {
namespace {

constexpr char started = '>';
constexpr char passed = '+';
constexpr char skipped = '~';
constexpr char failed = '-';

}  // namespace

std::string full_name(const testing::TestInfo& test) { return std::string(test.test_suite_name()) + '.' + test.name(); }

std::size_t TestResults::started() const {
  return passed.size() + skipped.size() + failed.size() + (unfinished.empty() ? 0 : 1);
}

ResultWriter::ResultWriter(const std::filesystem::path& file) : file_(file, std::ios::binary) {}

void ResultWriter::OnTestStart(const testing::TestInfo& test) { file_ << started << full_name(test) << std::endl; }

void ResultWriter::OnTestEnd(const testing::TestInfo& test) {
  const testing::TestResult& result = *test.result();
  file_ << (result.Failed() ? failed : result.Skipped() ? skipped : passed) << full_name(test) << std::endl;
}

TestResults read_results(const std::filesystem::path& file) {
  TestResults results;
  std::ifstream lines(file, std::ios::binary);
  for (std::string line; std::getline(lines, line);) {
    const std::string test = line.substr(1);
    switch (line.front()) {
      case started:
        results.unfinished = test;
        continue;
      case passed:
        results.passed.push_back(test);
        break;
      case skipped:
        results.skipped.push_back(test);
        break;
      default:
        results.failed.push_back(test);
    }
    results.unfinished.clear();
  }
  return results;
}

}  // namespace test_support
