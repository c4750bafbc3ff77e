#include <windows.h>
#include <gmock/gmock.h>

#include "ExpectedReports.h"
#include "ResourceMgr.h"

namespace {

using test_support::take_reports_without_lines;
using testing::ElementsAre;

// The holder is created once in a process, so this is a program of its own.
TEST(SharedStringsWithoutTheirModule, AreEmptyAndAssertedAtTheFirstAndEveryLaterCall) {
  // Takes the program's own folder, where the module lies, out of the search.
  ASSERT_TRUE(SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_SYSTEM32));
  EXPECT_EQ(L"", zd_common_res::GetString(4028));
  EXPECT_THAT(take_reports_without_lines(), ElementsAre("ASSERT hInstance | ResourceMgr.cpp:* CCommonRes",
                                                        "ASSERT hInstance | ResourceMgr.cpp:* instance"));
  for (const unsigned int id : {4028U, 103U}) {
    EXPECT_EQ(L"", zd_common_res::GetString(id));
    EXPECT_THAT(take_reports_without_lines(), ElementsAre("ASSERT hInstance | ResourceMgr.cpp:* instance"));
  }
}

}  // namespace
