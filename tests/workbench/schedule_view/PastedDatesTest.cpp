#include <gtest/gtest.h>

#include <ostream>

#include "PastedDates.h"

namespace workbench {
namespace {

struct Pasted {
  const char* name;
  std::string pasted;
  std::string file;
  std::size_t added_lines;
};

void PrintTo(const Pasted& parameter, std::ostream* out) { *out << parameter.name; }

class PastedText : public testing::TestWithParam<Pasted> {};

TEST_P(PastedText, BecomesAFileOfDates) {
  const PastedDates dates = date_file_of(GetParam().pasted);
  EXPECT_EQ(dates.file, GetParam().file);
  EXPECT_EQ(dates.added_lines, GetParam().added_lines);
}

INSTANTIATE_TEST_SUITE_P(
    PastedDates, PastedText,
    testing::Values(Pasted{"Nothing", "", "", 0}, Pasted{"BlankLines", " \r\n\r\n", "\n\n", 0},
                    Pasted{"OfAFile", "contract,date\r\n2026-01,2026-01-16\r\n", "contract,date\n2026-01,2026-01-16\n",
                           0},
                    Pasted{"OfATableProgram", "IF2601\t2026-01-16\r\nIF2602\t2026-02-24",
                           "contract,date\nIF2601,2026-01-16\nIF2602,2026-02-24\n", 1},
                    Pasted{"Typed", "2601   2026-01-16  ", "contract,date\n2601,2026-01-16\n", 1},
                    Pasted{"WithFullWidthComma", "2601，2026-01-16", "contract,date\n2601,2026-01-16\n", 1},
                    Pasted{"AfterABlankLine", "\n2601,2026-01-16", "contract,date\n\n2601,2026-01-16\n", 1},
                    Pasted{"WithoutDate", "2601", "contract,date\n2601\n", 1}),
    [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace workbench
