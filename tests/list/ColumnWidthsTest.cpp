#include <gmock/gmock.h>

#include <utility>
#include <vector>

#include "ColumnWidths.h"

namespace zd_expiration_rule_plugin {
namespace {

struct WidthsCase {
  const char* name;
  int whole;
  std::vector<double> fractions;
  std::vector<int> widths;
};

class ColumnWidths : public testing::TestWithParam<WidthsCase> {};

TEST_P(ColumnWidths, TruncateAndLeaveTheRestToTheLast) {
  std::vector<std::pair<std::size_t, int>> expected;
  for (const int width : GetParam().widths) expected.emplace_back(expected.size(), width);
  std::vector<std::pair<std::size_t, int>> set;
  share_width(GetParam().whole, GetParam().fractions,
              [&](std::size_t column, int width) { set.emplace_back(column, width); });
  EXPECT_EQ(expected, set);
}

INSTANTIATE_TEST_SUITE_P(All, ColumnWidths,
                         testing::Values(WidthsCase{"One", 301, {1.0}, {301}},
                                         WidthsCase{"OneWhateverItsFraction", 301, {0.25}, {301}},
                                         WidthsCase{"Three", 301, {0.5, 0.25, 1.0}, {150, 75, 76}},
                                         WidthsCase{"Negative", -7, {0.5, 0.25, 1.0}, {-3, -1, -3}},
                                         WidthsCase{"Zero", 0, {0.5, 1.0}, {0, 0}},
                                         WidthsCase{"TooMuch", 100, {0.75, 0.75, 0.5}, {75, 75, -50}},
                                         WidthsCase{"None", 301, {}, {}}),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace zd_expiration_rule_plugin
