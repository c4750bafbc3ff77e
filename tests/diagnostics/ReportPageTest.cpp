// The page on reports and the table of fixed reports say the same.

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "FixedReports.h"
#include "ModulePath.h"
#include "TextEncoding.h"

namespace diagnostics_test {
namespace {

using SnagtrapUtil::FixedReport;
using SnagtrapUtil::ReportKind;

std::string kind_and_text(const FixedReport& report) {
  switch (report.kind) {
    case ReportKind::assertion:
      return "assertion | `" + base::to_utf8(report.expression) + '`';
    case ReportKind::failed_call:
      return "assertion | none, with the HRESULT";
    case ReportKind::trace:
      return "trace | one of the formats below";
    case ReportKind::error:
      return "error | the text of a standard exception, else none";
  }
  return {};
}

/// The columns of a row that are not written by hand.
std::string row_of(const FixedReport& report) {
  return std::string("| `") + report.file + "` | " + std::to_string(report.line) + " | " + kind_and_text(report) +
         " | ";
}

/// The rows of the page's first table, which name a source file.
std::vector<std::string> documented_rows() {
  std::ifstream page(std::filesystem::path(base::path_beside_program(L"reports.md")));
  std::vector<std::string> rows;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("| `")) rows.push_back(line);
  }
  return rows;
}

TEST(ReportPage, ListsTheFixedReportsWithTheirKindsAndTextsInTheOrderOfTheTable) {
  const std::vector<std::string> documented = documented_rows();
  ASSERT_EQ(documented.size(), std::size(SnagtrapUtil::fixed_reports));
  for (std::size_t i = 0; i < documented.size(); ++i) {
    EXPECT_THAT(documented[i], testing::StartsWith(row_of(SnagtrapUtil::fixed_reports[i])));
  }
}

TEST(ReportPage, SaysOfEveryFixedReportWhatItMeansAndWhatToDo) {
  for (const std::string& row : documented_rows()) {
    const std::size_t action = row.rfind(" | ", row.size() - 3);
    const std::size_t meaning = row.rfind(" | ", action - 1);
    EXPECT_GT(action, meaning + 10) << row;
    EXPECT_GT(row.size(), action + 10) << row;
  }
}

TEST(FixedReports, HaveOneRowForEachFileAndLine) {
  for (const FixedReport& report : SnagtrapUtil::fixed_reports) {
    const auto same = [&](const FixedReport& other) {
      return report.line == other.line && std::string(report.file) == other.file;
    };
    EXPECT_EQ(std::ranges::count_if(SnagtrapUtil::fixed_reports, same), 1) << report.file << ':' << report.line;
  }
}

}  // namespace
}  // namespace diagnostics_test
