#include <atomic>
#include <thread>

#include "GuidText.h"
#include "ImportProbe.h"
#include "Owned.h"
#include "RecorderTest.h"
#include "Report.h"
#include "SnagtrapClient.h"

ZD_IMPORT_PROBE(OpenEventW, OpenEventProbe);

namespace diagnostics_test {
namespace {

using namespace SnagtrapUtil;
using test_support::RecordedCommand;

std::wstring event_name() { return L"Global\\" + test_support::guid_text(__uuidof(IKV_SnagtrapUtil::SnagtrapEvent)); }

/// The named event that holds clients back in every program. Another program that reports at that moment may keep it
/// open after a test has closed it, so the next test finds it in that state.
class GlobalEvent : public RecorderTest {
 protected:
  GlobalEvent() { ResetEvent(event.get()); }

  base::KernelHandle event{CreateEventW(nullptr, TRUE, FALSE, event_name().c_str())};
};

TEST_F(GlobalEvent, HoldsEveryAccessBackUntilItIsSet) {
  constexpr DWORD time_to_be_wrong_ms = 100;
  std::atomic<bool> is_set = false;
  bool came_back_after = false;
  std::thread reporter([&] {
    snagtrap_client();
    came_back_after = is_set;
  });
  Sleep(time_to_be_wrong_ms);
  is_set = true;
  SetEvent(event.get());
  reporter.join();
  EXPECT_TRUE(came_back_after);
}

TEST_F(GlobalEvent, ThatIsSetBlocksNoThread) {
  SetEvent(event.get());
  EXPECT_FALSE(expect(false, L"x", location));
  EXPECT_EQ(recorder.commands(L"PROCESS").size(), 1u);
}

TEST_F(GlobalEvent, IsClosedAfterEachAccess) {
  SetEvent(event.get());
  HANDLE opened = nullptr;
  OpenEventProbe probe;
  probe.replace([&](DWORD access, BOOL inherit, LPCWSTR name) {
    EXPECT_EQ(event_name(), name);
    return opened = probe.original(access, inherit, name);
  });
  snagtrap_client();
  ASSERT_TRUE(opened);
  DWORD flags = 0;
  EXPECT_FALSE(GetHandleInformation(opened, &flags)) << "it is still held";
}

class Commands : public RecorderTest {};

TEST_F(Commands, OfSeveralThreadsReachTheLibraryOneAtATime) {
  constexpr int thread_count = 8;
  constexpr int reports = 20;
  std::atomic<int> inside = 0;
  std::atomic<int> most = 0;
  recorder.on_command([&](const RecordedCommand&) {
    most = std::max(most.load(), ++inside);
    Sleep(0);
    --inside;
  });
  std::vector<std::thread> threads;
  for (int i = 0; i < thread_count; ++i) {
    threads.emplace_back([] {
      for (int k = 0; k < reports; ++k) expect(false, L"x", location);
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(most, 1);
  EXPECT_EQ(recorder.commands(L"PROCESS").size(), static_cast<std::size_t>(thread_count * reports));
}

TEST_F(Commands, ReportWhileTheLibraryHandlesOneIsHandledInside) {
  bool nested = false;
  recorder.on_command([&](const RecordedCommand& command) {
    if (command.word != L"PROCESS" || nested) return;
    nested = true;
    expect(false, L"inner", location);
  });
  expect(false, L"outer", location);
  const auto records = recorder.commands(L"PROCESS");
  ASSERT_EQ(records.size(), 2u);
  EXPECT_EQ(test_support::field_text(records[0], L"Description"), L"outer");
  EXPECT_EQ(test_support::field_text(records[1], L"Description"), L"inner");
}

}  // namespace
}  // namespace diagnostics_test
