#include <map>

#include "ListDialogTest.h"
#include "PrintGeometry.h"
#include "SentMessages.h"

namespace list_test {
namespace {

constexpr int growing[] = {IDC_RULES_GROUP, IDC_RULES_LIST};
constexpr int top_right[] = {IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE};

RECT rect_of(const RuleList& list, int id) { return test_support::rect_of(list.item(id)); }

void set_size(HWND window, LONG width, LONG height) {
  SetWindowPos(window, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}

RECT moved(RECT rect, LONG left, LONG top, LONG right, LONG bottom) {
  return {rect.left + left, rect.top + top, rect.right + right, rect.bottom + bottom};
}

int expected_column_width(const RuleList& list) {
  return static_cast<int>(client_rect(list.view()).right) - GetSystemMetrics(SM_CXVSCROLL);
}

class ListLayout : public ListDialogTest {};

TEST_F(ListLayout, ListAndItsFrameGrowAndButtonsStayAtTheirCorners) {
  open([](RuleList& list) {
    const RECT window = window_rect(list.window());
    std::map<int, RECT> before;
    for (const int id : {IDC_RULES_GROUP, IDC_RULES_LIST, IDC_ADD_RULE, IDC_EDIT_RULE, IDC_DELETE_RULE, IDCANCEL}) {
      before[id] = rect_of(list, id);
    }
    const RECT client = client_rect(list.window());
    for (const POINT more : {POINT{101, 57}, POINT{0, 203}, POINT{333, 40}}) {
      set_size(list.window(), window.right - window.left + more.x, window.bottom - window.top + more.y);
      const RECT grown = client_rect(list.window());
      const LONG dx = grown.right - client.right;
      const LONG dy = grown.bottom - client.bottom;
      EXPECT_EQ(more.x, dx);
      EXPECT_EQ(more.y, dy);
      for (const int id : growing) EXPECT_EQ(moved(before[id], 0, 0, dx, dy), rect_of(list, id)) << id;
      for (const int id : top_right) EXPECT_EQ(moved(before[id], dx, 0, dx, 0), rect_of(list, id)) << id;
      EXPECT_EQ(moved(before[IDCANCEL], dx, dy, dx, dy), rect_of(list, IDCANCEL));
    }
  });
}

TEST_F(ListLayout, ColumnFillsTheListLessAScrollBar) {
  open([](RuleList& list) {
    EXPECT_EQ(expected_column_width(list), list.column_width());
    const RECT window = window_rect(list.window());
    for (const LONG more : {1, 200, 37}) {
      set_size(list.window(), window.right - window.left + more, window.bottom - window.top + more);
      EXPECT_EQ(expected_column_width(list), list.column_width()) << more;
    }
  });
}

TEST_F(ListLayout, ColumnLeavesRoomForAScrollBarBesideTheOneThatIsThere) {
  store_hundred_rules();
  open([](RuleList& list) {
    EXPECT_TRUE(GetWindowLongW(list.view(), GWL_STYLE) & WS_VSCROLL);
    EXPECT_EQ(expected_column_width(list), list.column_width());
  });
}

TEST_F(ListLayout, NegativeColumnWidthIsSentAs16Bits) {
  open([](RuleList& list) {
    const RECT view = window_rect(list.view());
    const LONG frame = view.right - view.left - client_rect(list.view()).right;
    set_size(list.view(), frame + 5, 50);
    std::vector<LPARAM> widths;
    {
      const SentMessages watch([&](const CWPSTRUCT& message) {
        if (message.message == LVM_SETCOLUMNWIDTH) widths.push_back(message.lParam);
      });
      LRESULT result = 0;
      // By the map: the whole dialog would lay out its children first.
      list.dialog().ProcessWindowMessage(list.window(), WM_SIZE, SIZE_MAXHIDE, 0, result);
    }
    const int width = expected_column_width(list);
    EXPECT_LT(width, 0);
    EXPECT_THAT(widths, testing::ElementsAre(static_cast<WORD>(width)));
  });
}

TEST_F(ListLayout, SmallestSizeIsThatOfTheTemplate) {
  open([](RuleList& list) {
    RECT units = {0, 0, 258, 214};
    MapDialogRect(list.window(), &units);
    RECT whole = units;
    AdjustWindowRectEx(&whole, WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_THICKFRAME, FALSE, 0);
    MINMAXINFO limits = {};
    SendMessageW(list.window(), WM_GETMINMAXINFO, 0, reinterpret_cast<LPARAM>(&limits));
    EXPECT_EQ(whole.right - whole.left, limits.ptMinTrackSize.x);
    EXPECT_EQ(whole.bottom - whole.top, limits.ptMinTrackSize.y);
    set_size(list.window(), 10, 10);
    const RECT window = window_rect(list.window());
    EXPECT_EQ(limits.ptMinTrackSize.x, window.right - window.left);
    EXPECT_EQ(limits.ptMinTrackSize.y, window.bottom - window.top);
  });
}

TEST_F(ListLayout, WindowWithoutAClientAreaDoesNoHarm) {
  open([](RuleList& list) {
    const RECT view = rect_of(list, IDC_RULES_LIST);
    // The system is not asked for the smallest size.
    SetWindowPos(list.window(), nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOZORDER | SWP_NOSENDCHANGING);
    const RECT window = {0, 0, 500, 500};
    set_size(list.window(), window.right, window.bottom);
    set_size(list.window(), 0, 0);
    EXPECT_EQ(view.left, rect_of(list, IDC_RULES_LIST).left);
    EXPECT_EQ(expected_column_width(list), list.column_width());
  });
}

}  // namespace
}  // namespace list_test
