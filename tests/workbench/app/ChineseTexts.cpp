#include <gtest/gtest.h>

#include "UiLanguage.h"

namespace workbench {
namespace {

/// The tests expect Chinese texts whatever the language of the machine; those of the English ones choose it themselves.
class ChineseTexts final : public testing::EmptyTestEventListener {
  void OnTestStart(const testing::TestInfo&) override { choose_language(Language::chinese); }
};

const bool installed = [] {
  testing::UnitTest::GetInstance()->listeners().Append(new ChineseTexts);
  return true;
}();

}  // namespace
}  // namespace workbench
