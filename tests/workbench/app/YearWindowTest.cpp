#include "FailingNew.h"
#include "ScheduleTest.h"
#include "Texts.h"
#include "YearWindow.h"

namespace workbench {
namespace {

void paint_without_memory(HWND window) {
  InvalidateRect(window, nullptr, FALSE);
  const test_support::FailingNew first_allocation_fails(1);
  UpdateWindow(window);
  EXPECT_TRUE(first_allocation_fails.has_failed());
}

TEST(YearWindow, FailureOfPaintingIsReportedOnceAndTheNextPaintingWorks) {
  HWND parent =
      CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 900, 600, nullptr, nullptr, nullptr, nullptr);
  ASSERT_TRUE(parent);
  {
    int failures = 0;
    YearWindow year(parent, 1, [&] { ++failures; });
    SetWindowPos(year.handle(), nullptr, 0, 0, 900, 600, SWP_NOZORDER);
    year.show({.first = std::chrono::year{2026} / std::chrono::January, .marks = {}, .texts = {}});
    paint_without_memory(year.handle());
    EXPECT_EQ(failures, 1);
    EXPECT_FALSE(GetUpdateRect(year.handle(), nullptr, FALSE)) << "it is not painted again and again";
    InvalidateRect(year.handle(), nullptr, FALSE);
    UpdateWindow(year.handle());
    EXPECT_EQ(failures, 1);
  }
  DestroyWindow(parent);
}

TEST_F(ScheduleTest, FailureOfTheYearIsSaidWhereItsDatesWouldBe) {
  start_at_2026();
  UpdateWindow(part(IDC_YEAR));
  paint_without_memory(part(IDC_YEAR));
  EXPECT_EQ(notice(), text(IDS_INTERNAL_ERROR, {describe(E_OUTOFMEMORY)}));
  EXPECT_EQ(ListView_GetItemCount(list()), 0);
  choose(IDC_MONTHS, 1);
  EXPECT_EQ(ListView_GetItemCount(list()), 3) << "the next choice is shown again";
}

}  // namespace
}  // namespace workbench
