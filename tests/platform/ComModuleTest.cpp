#include <gtest/gtest.h>

#include "ComModule.h"
#include "ImportProbe.h"

ZD_IMPORT_PROBE(InitializeCriticalSectionAndSpinCount, MakeSectionProbe);

namespace platform_test {
namespace {

using platform::ComModule;

TEST(ComModule, IsOneWithASectionAndNoLocks) {
  EXPECT_EQ(&ComModule::instance(), &ComModule::instance());
  EXPECT_TRUE(ComModule::instance().initialised());
  EXPECT_EQ(ComModule::instance().lock_count(), 0);
}

TEST(ComModule, WithoutItsSectionSaysSo) {
  MakeSectionProbe sections;
  EXPECT_TRUE(ComModule().initialised());
  sections.fail(0, FALSE);
  EXPECT_FALSE(ComModule().initialised());
}

}  // namespace
}  // namespace platform_test
