// What the library reports when it is used wrongly, and that it goes on afterwards.

#include <gmock/gmock.h>

#include "ExpectedReports.h"
#include "ImportProbe.h"
#include "ResizableGrip.h"
#include "ResizableLayout.h"
#include "ResizableMinMax.h"
#include "TestWindows.h"

ZD_IMPORT_PROBE(RegisterWindowMessageW, RegisterMessageProbe);

namespace resizable_test {
namespace {

using test_support::take_reports;
using test_support::take_reports_without_lines;
using testing::ElementsAre;
using testing::IsEmpty;

class ReportingWindow : public platform::CWindow,
                        public CResizableLayout<ReportingWindow>,
                        public CResizableGrip<ReportingWindow>,
                        public CResizableMinMax<ReportingWindow> {
 public:
  using CResizableLayout::Anchored;
};

class MisusedLayout : public testing::Test {
 protected:
  MisusedLayout() { window.Attach(parent.get()); }

  OwnedWindow parent{make_popup()};
  HWND child = make_child(parent.get(), L"Edit", {10, 20, 60, 40});
  ReportingWindow window;
};

TEST_F(MisusedLayout, ReportsWhatIsNoWindowAndRecordsIt) {
  window.AddAnchor(nullptr, TOP_LEFT);
  EXPECT_THAT(take_reports(), ElementsAre("ASSERT ::IsWindow(hWnd) | ResizableLayout.h:271 AddAnchor",
                                          "ASSERT ::IsChild(pT->m_hWnd, hWnd) | ResizableLayout.h:273 AddAnchor"));
  EXPECT_EQ(window.Anchored().size(), 1U);
  window.ArrangeLayout();
}

TEST_F(MisusedLayout, ReportsWhatIsNoChildAndRecordsIt) {
  const OwnedWindow stranger(make_popup());
  window.AddAnchor(stranger.get(), TOP_LEFT);
  EXPECT_THAT(take_reports(), ElementsAre("ASSERT ::IsChild(pT->m_hWnd, hWnd) | ResizableLayout.h:273 AddAnchor"));
  EXPECT_EQ(window.Anchored().size(), 1U);
}

TEST_F(MisusedLayout, ReportsAMissingFirstAnchorAndRecordsTheChild) {
  window.AddAnchor(child, NOANCHOR, BOTTOM_RIGHT);
  EXPECT_THAT(take_reports(), ElementsAre("ASSERT anchorTL != NOANCHOR | ResizableLayout.h:275 AddAnchor"));
  EXPECT_EQ(window.Anchored().size(), 1U);
}

TEST_F(MisusedLayout, HalfOfNoAnchorIsAnAnchor) {
  window.AddAnchor(child, {-1, 0}, {0, -1});
  EXPECT_THAT(take_reports(), IsEmpty());
  EXPECT_EQ(window.Anchored()[0].bottom_right.anchor, CSize(0, -1));
}

TEST_F(MisusedLayout, ReportsACallbackWithoutAnId) {
  window.AddAnchorCallback(child, 0);
  EXPECT_THAT(take_reports_without_lines(),
              ElementsAre("ASSERT callbackId != 0 | ResizableLayout.h:* AddAnchorCallback"));
}

TEST_F(MisusedLayout, ReportsACallbackThatIsNotImplemented) {
  window.AddAnchorCallback(child, 7);
  resize(parent.get(), 400, 300);
  window.ArrangeLayout();
  EXPECT_THAT(take_reports(), ElementsAre("ASSERT 0 | ResizableLayout.h:469 ArrangeLayoutCallback"));
  EXPECT_EQ(rect_of(child), (RECT{10, 20, 60, 40}));
}

TEST_F(MisusedLayout, ReportsAnOutParameterThatHoldsARegionAlready) {
  const base::Region taken(CreateRectRgn(0, 0, 1, 1));
  HRGN region = taken.get();
  window.BuildEraseRegion(&region);
  const base::Region built(region);
  EXPECT_THAT(take_reports_without_lines(), ElementsAre("ASSERT m_hRgn == 0 | ResizableLayout.h:* BuildEraseRegion"));
  EXPECT_NE(built.get(), taken.get()) << "it is built all the same";
}

TEST_F(MisusedLayout, ReportsAGripWithoutStatus) {
  window.ShowSizeGrip(nullptr, 1);
  window.HideSizeGrip(nullptr, 1);
  EXPECT_THAT(take_reports_without_lines(), ElementsAre("ASSERT pStatus != 0 | ResizableGrip.h:* ShowSizeGrip",
                                                        "ASSERT pStatus != 0 | ResizableGrip.h:* HideSizeGrip"));
  EXPECT_EQ(window.ShowCount(), 0);
}

TEST_F(MisusedLayout, ReportsAGripWithoutDialog) {
  parent.destroy();
  window.UpdateSizeGrip();
  EXPECT_THAT(take_reports_without_lines(), ElementsAre("ASSERT pT->IsWindow() | ResizableGrip.h:* UpdateSizeGrip"));
}

TEST_F(MisusedLayout, ReportsAnotherMessageMapOfTheGrip) {
  LRESULT result = 77;
  EXPECT_FALSE(window.SizeGrip().ProcessWindowMessage(nullptr, WM_SETFOCUS, 0, 0, result, 1));
  EXPECT_THAT(take_reports(), ElementsAre("ASSERT 0 | ResizableGrip.h:117 ProcessWindowMessage"));
  EXPECT_EQ(result, 77);
}

TEST_F(MisusedLayout, ReportsAnExtraSizeThatIsNotCalculated) {
  CSize extra(5, 6);
  EXPECT_EQ(window.CalcSizeExtra(parent.get(), {1, 2}, {3, 4}, extra), FALSE);
  EXPECT_THAT(take_reports(), ElementsAre("ASSERT 0 | ResizableMinMax.h:130 CalcSizeExtra"));
  EXPECT_EQ(extra, CSize(5, 6));
}

class ResizeMessage : public testing::Test {
 protected:
  ResizeMessage() { RegisterResizeMessage::uRegisterdWMU_RESIZESUPPORT = 0; }
  ~ResizeMessage() override { RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT(); }

  RegisterMessageProbe probe;
};

TEST_F(ResizeMessage, IsTheRegisteredOneAndReachesTheSendersAtEveryCall) {
  const UINT number = RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT();
  EXPECT_EQ(number, RegisterWindowMessageW(L"WMU_RESIZESUPPORT"));
  WMU_RESIZESUPPORT = 0;
  RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT();
  EXPECT_EQ(WMU_RESIZESUPPORT, number);
}

TEST_F(ResizeMessage, IsRegisteredOnce) {
  RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT();
  RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT();
  EXPECT_EQ(probe.calls(), 1);
}

TEST_F(ResizeMessage, ThatCannotBeRegisteredIsReportedAndTriedAgain) {
  probe.fail(1, 0);
  EXPECT_EQ(RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT(), 0U);
  EXPECT_THAT(
      take_reports(),
      ElementsAre("ASSERT uRegisterdWMU_RESIZESUPPORT != 0 | ResizableMsgSupport.h:48 GetRegisteredWMU_RESIZESUPPORT"));
  EXPECT_NE(RegisterResizeMessage::GetRegisteredWMU_RESIZESUPPORT(), 0U);
}

}  // namespace
}  // namespace resizable_test
