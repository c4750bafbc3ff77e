#include <cstring>

#include "ImportProbe.h"
#include "ListDialogTest.h"
#include "PrintGeometry.h"
#include "RegistryTree.h"

ZD_IMPORT_PROBE(GetFileVersionInfoSizeW, VersionSizeProbe);

namespace list_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Company and product of this test program, which carries the module's resources.
constexpr wchar_t key_name[] = L"SOFTWARE\\zdExpirationRules\\zdExpirationRules\\Windows Placement";
constexpr wchar_t value_name[] = L"ZDExpirationRulesDialog";

LONG height_of(const RECT& rect) { return rect.bottom - rect.top; }

class ListPlacement : public ListDialogTest {
 protected:
  static std::vector<BYTE> stored_bytes() {
    return test_support::registry_bytes(HKEY_CURRENT_USER, key_name, value_name);
  }

  WINDOWPLACEMENT stored() const {
    const std::vector<BYTE> bytes = stored_bytes();
    WINDOWPLACEMENT placement = {};
    EXPECT_EQ(44U, bytes.size());
    if (bytes.size() == sizeof placement) std::memcpy(&placement, bytes.data(), sizeof placement);
    return placement;
  }

  /// The rectangle that the dialog gives itself when it opens.
  RECT opened() {
    RECT rect = {};
    const HandledMessages watch([&](const CWPRETSTRUCT& message) {
      if (message.message == WM_INITDIALOG) rect = window_rect(message.hwnd);
    });
    open([](RuleList&) {});
    return rect;
  }

  void close_at(const RECT& rect) {
    open([&](RuleList& list) {
      MoveWindow(list.window(), rect.left, rect.top, rect.right - rect.left, height_of(rect), TRUE);
    });
  }

  /// Whether the dialog was maximised at the end of its initialisation.
  bool maximised_at_initialisation() {
    std::vector<bool> maximised;
    const HandledMessages watch([&](const CWPRETSTRUCT& message) {
      if (message.message == WM_INITDIALOG) maximised.push_back(IsZoomed(message.hwnd) != FALSE);
    });
    open([](RuleList&) {});
    EXPECT_THAT(maximised, testing::SizeIs(1));
    return !maximised.empty() && maximised.front();
  }

  const LONG caption = GetSystemMetrics(SM_CYCAPTION);
};

TEST_F(ListPlacement, ClosingStoresTheVisibleBottomLessTheCaption) {
  const RECT rect = {120, 90, 620, 590};
  close_at(rect);
  const WINDOWPLACEMENT placement = stored();
  EXPECT_EQ(44U, placement.length);
  EXPECT_EQ(UINT{SW_SHOWNORMAL}, placement.showCmd);
  EXPECT_EQ((RECT{120, 90, 620, 590 - caption}), placement.rcNormalPosition);
}

TEST_F(ListPlacement, OpensWhereAndAsLargeAsItWasClosed) {
  const RECT rect = {120, 90, 620, 590};
  close_at(rect);
  EXPECT_EQ(rect, opened());
  EXPECT_EQ(rect, opened());
}

TEST_F(ListPlacement, ChildrenFollowTheRestoredSize) {
  close_at({120, 90, 720, 690});
  open([&](RuleList& list) {
    RECT client = {};
    GetClientRect(list.window(), &client);
    RECT close = window_rect(list.item(IDCANCEL));
    MapWindowPoints(nullptr, list.window(), reinterpret_cast<POINT*>(&close), 2);
    EXPECT_GT(close.left, client.right - 120);
    EXPECT_GT(close.top, client.bottom - 60);
    GetClientRect(list.view(), &client);
    EXPECT_EQ(client.right - GetSystemMetrics(SM_CXVSCROLL), list.column_width());
  });
}

// The modal loop of the test platform shows a dialog in its normal state when its queue is empty for the first time;
// what counts is the state at the end of the initialisation.
TEST_F(ListPlacement, ClosedMaximisedItOpensMaximised) {
  const RECT rect = {120, 90, 620, 590};
  close_at(rect);
  EXPECT_FALSE(maximised_at_initialisation());
  open([](RuleList& list) { ShowWindow(list.window(), SW_MAXIMIZE); });
  EXPECT_EQ(UINT{SW_SHOWMAXIMIZED}, stored().showCmd);
  EXPECT_EQ((RECT{120, 90, 620, 590 - caption}), stored().rcNormalPosition);
  EXPECT_TRUE(maximised_at_initialisation());
}

TEST_F(ListPlacement, HostWithoutAVersionBlockIsReportedAndTheDialogOpens) {
  VersionSizeProbe sizes;
  sizes.fail(0, 0);
  RECT rect = {};
  open([&](RuleList& list) { rect = window_rect(list.window()); });
  EXPECT_GT(height_of(rect), 0);
  EXPECT_THAT(reports(), ElementsAre("ASSERT 00000714 | RegistryHelper.h:15 zd_common::ZDRegistryPath"));
  EXPECT_THAT(stored_bytes(), IsEmpty());
}

TEST_F(ListPlacement, PathIsReadAgainAtEveryOpening) {
  VersionSizeProbe sizes;
  opened();
  opened();
  EXPECT_EQ(2, sizes.calls());
}

TEST_F(ListPlacement, NothingIsStoredWhileTheDialogIsOpen) {
  open([&](RuleList& list) {
    const std::vector<BYTE> first = stored_bytes();
    MoveWindow(list.window(), 10, 10, 600, 600, TRUE);
    EXPECT_EQ(first, stored_bytes());
  });
}

}  // namespace
}  // namespace list_test
