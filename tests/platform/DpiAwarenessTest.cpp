#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "Dialog.h"
#include "DpiAwareness.h"
#include "ImportProbe.h"
#include "Recorder.h"
#include "TestResources.h"
#include "Thrower.h"

namespace platform {
namespace {

ZD_IMPORT_PROBE(GetProcAddress, GetProcAddressProbe);
ZD_IMPORT_PROBE(GetModuleHandleW, GetModuleHandleProbe);
ZD_IMPORT_PROBE(DialogBoxParamW, DialogBoxProbe);

constexpr UINT dpi_message = WM_APP + 1;

DPI_AWARENESS awareness() { return GetAwarenessFromDpiAwarenessContext(GetThreadDpiAwarenessContext()); }

bool is_context(DPI_AWARENESS_CONTEXT expected) {
  return AreDpiAwarenessContextsEqual(GetThreadDpiAwarenessContext(), expected) != FALSE;
}

/// A dialog that notes the thread's awareness at each of its messages and closes itself.
class DpiDialog final : public CDialogImpl<DpiDialog> {
 public:
  static constexpr int IDD = IDD_SAMPLE;

  DpiDialog() = default;
  ~DpiDialog() override = default;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM, LPARAM, LRESULT&, DWORD) override {
    ++messages;
    if (awareness() != DPI_AWARENESS_SYSTEM_AWARE) ++elsewhere;
    if (handler) handler(message);
    if (message == WM_INITDIALOG) PostMessageW(window, dpi_message, 0, 0);
    if (message == dpi_message) EndDialog(IDOK);
    return FALSE;
  }

  std::function<void(UINT)> handler;
  int messages = 0;
  int elsewhere = 0;
};

/// A thread that has the awareness of a host which draws for each monitor.
class DpiAwarenessTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(is_context(per_monitor_)); }
  ~DpiAwarenessTest() override { SetThreadDpiAwarenessContext(previous_); }

  const DPI_AWARENESS_CONTEXT per_monitor_ = DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE;

  test_support::Recorder recorder_;

 private:
  const DPI_AWARENESS_CONTEXT previous_ = SetThreadDpiAwarenessContext(per_monitor_);
};

TEST_F(DpiAwarenessTest, OfAPerMonitorThreadIsTheSystemsInsideAndAsBeforeAfterwards) {
  {
    const ScopedSystemDpiAwareness outer;
    EXPECT_TRUE(is_context(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE));
    { const ScopedSystemDpiAwareness inner; }
    EXPECT_TRUE(is_context(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE)) << "the inner one had nothing to restore";
  }
  EXPECT_TRUE(is_context(per_monitor_));
}

TEST_F(DpiAwarenessTest, OfAnyOtherThreadStays) {
  for (const auto context : {DPI_AWARENESS_CONTEXT_UNAWARE, DPI_AWARENESS_CONTEXT_SYSTEM_AWARE}) {
    SetThreadDpiAwarenessContext(context);
    {
      const ScopedSystemDpiAwareness scope;
      EXPECT_TRUE(is_context(context));
    }
    EXPECT_TRUE(is_context(context));
  }
}

TEST_F(DpiAwarenessTest, IsRestoredWhenAnExceptionLeavesTheScope) {
  for (const auto& thrower : test_support::throwers) {
    try {
      const ScopedSystemDpiAwareness scope;
      EXPECT_TRUE(is_context(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE));
      thrower.raise();
    } catch (...) {
      EXPECT_TRUE(is_context(per_monitor_)) << thrower.name;
    }
  }
  EXPECT_TRUE(is_context(per_monitor_));
}

TEST_F(DpiAwarenessTest, StaysWhereOneOfTheFunctionsIsMissing) {
  for (const std::string missing :
       {"GetThreadDpiAwarenessContext", "GetAwarenessFromDpiAwarenessContext", "SetThreadDpiAwarenessContext"}) {
    GetProcAddressProbe lookups;
    lookups.replace([&](HMODULE module, LPCSTR name) -> FARPROC {
      return missing == name ? nullptr : lookups.original(module, name);
    });
    {
      const ScopedSystemDpiAwareness scope;
      EXPECT_TRUE(is_context(per_monitor_)) << missing;
    }
    EXPECT_TRUE(is_context(per_monitor_)) << missing;
  }
}

TEST_F(DpiAwarenessTest, StaysWhereTheSystemsLibraryIsNotFound) {
  GetModuleHandleProbe lookups;
  lookups.fail(0, nullptr);
  const ScopedSystemDpiAwareness scope;
  EXPECT_TRUE(is_context(per_monitor_));
}

TEST_F(DpiAwarenessTest, OfAModalDialogIsTheSystemsAtEachMessage) {
  DpiDialog dialog;
  EXPECT_EQ(dialog.DoModal(nullptr), IDOK);
  EXPECT_GT(dialog.messages, 1);
  EXPECT_EQ(dialog.elsewhere, 0);
  EXPECT_TRUE(is_context(per_monitor_));
}

TEST_F(DpiAwarenessTest, OfAModelessDialogStaysTheSystemsAfterItsCreation) {
  DpiDialog dialog;
  HWND window = dialog.Create(nullptr);
  ASSERT_TRUE(IsWindow(window));
  EXPECT_TRUE(is_context(per_monitor_));
  EXPECT_EQ(GetAwarenessFromDpiAwarenessContext(GetWindowDpiAwarenessContext(window)), DPI_AWARENESS_SYSTEM_AWARE);
  SendMessageW(window, WM_NULL, 0, 0);
  DestroyWindow(window);
  EXPECT_EQ(dialog.elsewhere, 0);
  EXPECT_TRUE(is_context(per_monitor_));
}

TEST_F(DpiAwarenessTest, OfAnUnawareHostStaysSoInItsDialogs) {
  SetThreadDpiAwarenessContext(DPI_AWARENESS_CONTEXT_UNAWARE);
  DpiDialog dialog;
  int aware = 0;
  dialog.handler = [&](UINT) { aware += awareness() != DPI_AWARENESS_UNAWARE; };
  dialog.DoModal(nullptr);
  EXPECT_EQ(aware, 0);
  EXPECT_TRUE(is_context(DPI_AWARENESS_CONTEXT_UNAWARE));
}

TEST_F(DpiAwarenessTest, IsRestoredAfterADialogWhoseHandlersThrow) {
  for (const UINT message : {static_cast<UINT>(WM_INITDIALOG), static_cast<UINT>(WM_NCDESTROY)}) {
    for (const auto& thrower : test_support::throwers) {
      DpiDialog dialog;
      dialog.handler = [&](UINT arrived) {
        if (arrived == message) thrower.raise();
      };
      dialog.DoModal(nullptr);
      EXPECT_TRUE(is_context(per_monitor_)) << thrower.name << " at message " << message;
    }
  }
}

TEST_F(DpiAwarenessTest, IsRestoredWhenTheDialogCannotBeCreated) {
  DialogBoxProbe boxes;
  boxes.fail(0, -1);
  DpiDialog dialog;
  EXPECT_EQ(dialog.DoModal(nullptr), -1);
  EXPECT_TRUE(is_context(per_monitor_));
}

}  // namespace
}  // namespace platform
