#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>

#include "Depth.h"
#include "DialogScript.h"
#include "ExpectedReports.h"
#include "Footprint.h"
#include "Owned.h"
#include "RuleList.h"
#include "RuntimeKind.h"
#include "ScratchRoot.h"
#include "Session.h"
#include "TemporaryFolder.h"
#include "resource.h"

namespace leaks_test {
namespace {

using faults_test::Session;
using module_test::Module;
using test_support::DialogScript;
using test_support::HostRule;
using test_support::RecordingHost;

constexpr int warm_up = 100;
const int repetitions = test_support::repetitions(1000, 100);
// The heap takes memory from the system in steps of this size, and one may come late.
constexpr std::size_t heap_step = std::size_t{64} * 1024;

const HostRule stored_rule = {7, L"IF quarter", 2, 0, 0, 15, 1, 3, 5, 1, 0};
const HostRule other_rule = {8, L"IF month", 2, 0, 0, 15, 1, 3, 5, 1, 0};

struct Difference {
  Footprint before;
  Footprint after;
};

/// Does something again and again, after it has warmed up.
Difference repeat_and_measure(const std::function<void()>& once) {
  // The system keeps a block from the first index on that is asked of it, be it for a measurement.
  footprint();
  for (int time = 0; time < warm_up; ++time) once();
  const Footprint before = footprint();
  for (int time = 0; time < repetitions; ++time) once();
  return {before, footprint()};
}

// A heap of low fragmentation takes some blocks from itself now and then, in which it keeps many small ones.
std::size_t blocks_of_the_heap() {
  return is_heap_of_low_fragmentation() ? static_cast<std::size_t>(repetitions / 10) : 0;
}

/// Does something again and again. Fails the test when this takes a block of memory or an index that does not come
/// back, or more private bytes than the platform keeps of the same without the module.
void expect_flat(const std::function<void()>& once, std::size_t bytes_of_platform = 0) {
  const auto [before, after] = repeat_and_measure(once);
  EXPECT_LE(after.heap_blocks, before.heap_blocks + blocks_of_the_heap());
  EXPECT_LE(after.private_bytes, before.private_bytes + bytes_of_platform + heap_step);
  EXPECT_EQ(after.thread_local_index, before.thread_local_index);
  EXPECT_EQ(after.fiber_local_index, before.fiber_local_index);
}

/// A copy of the built module without its entry point: a library of the same size and imports that does nothing.
std::string idle_library() {
  std::string bytes = test_support::read_bytes(module_test::built_module_path());
  auto* const headers = reinterpret_cast<IMAGE_NT_HEADERS64*>(
      bytes.data() + reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data())->e_lfanew);
  headers->OptionalHeader.AddressOfEntryPoint = 0;
  return bytes;
}

/// How many private bytes the platform keeps when a library is loaded and unloaded as often as the module is.
std::size_t bytes_kept_of_idle_library() {
  const test_support::TemporaryFolder folder;
  const std::filesystem::path path = folder.path() / L"idle.dll";
  test_support::write_bytes(path, idle_library());
  const auto [before, after] = repeat_and_measure([&] {
    const base::LoadedModule library(LoadLibraryW(path.c_str()));
    ASSERT_TRUE(library);
  });
  return after.private_bytes - std::min(before.private_bytes, after.private_bytes);
}

class LeaksTest : public test_support::NeedsReplacedRuntime<testing::Test> {
 protected:
  LeaksTest() { host_.rules() = {stored_rule}; }
  void TearDown() override { EXPECT_TRUE(test_support::take_reports().empty()); }

  /// Runs an action of a plug-in again and again and releases the plug-in: nothing of it may remain.
  void repeat(const std::function<void(Session&)>& once) {
    const Module module;
    Session session(module, host_, [] {});
    ASSERT_EQ(S_OK, session.initialize());
    expect_flat([&] {
      once(session);
      host_.calls().forget();
      ASSERT_THAT(session.handles_left(), testing::IsEmpty());
    });
    session.end();
  }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
  RecordingHost host_;
};

TEST_F(LeaksTest, ManyRuleListsLeaveNothing) {
  repeat([](Session& session) {
    const DialogScript user({});
    ASSERT_EQ(S_OK, session.command());
    ASSERT_EQ(1, user.lists());
  });
}

TEST_F(LeaksTest, ManyEditorsLeaveNothing) {
  repeat([](Session& session) {
    const DialogScript user({}, {L"another name", {}, {}, {}});
    ASSERT_EQ(S_OK, session.show(stored_rule.id));
    ASSERT_EQ(1, user.editors());
  });
}

TEST_F(LeaksTest, ManyRefillsLeaveNothing) {
  const std::vector<HostRule> both = {stored_rule, other_rule};
  const Module module;
  Session session(module, host_, [] {});
  ASSERT_EQ(S_OK, session.initialize());
  // The list shows what one delete has left. The host gets both rules back, so that one is left after the next.
  const auto refill = [&](HWND list, const std::vector<std::string>& handles) {
    const long shown = host_.rules().back().id;
    host_.rules() = both;
    test_support::RuleList(list).select_rule(shown);
    test_support::send_click(list, IDC_DELETE_RULE);
    ASSERT_EQ(1u, host_.rules().size());
    ASSERT_EQ(handles, session.handles_left());
    host_.calls().forget();
    host_.forget_changes();
  };
  const DialogScript user({[&](HWND list) {
                            refill(list, session.handles_left());
                            expect_flat([&, handles = session.handles_left()] { refill(list, handles); });
                          }},
                          {}, L"IF");
  ASSERT_EQ(S_OK, session.command());
  EXPECT_EQ(1 + warm_up + repetitions, user.questions());
  session.end();
}

TEST_F(LeaksTest, ManyLoadsAndUnloadsLeaveNothing) {
  const auto load_and_unload = [] {
    {
      RecordingHost host;
      const Module module;
      Session session(module, host, [] {});
      ASSERT_EQ(S_OK, session.initialize());
      session.end();
    }
    ASSERT_EQ(nullptr, GetModuleHandleW(L"zdExpirationRules.dll"));
  };
  expect_flat(load_and_unload, bytes_kept_of_idle_library());
}

}  // namespace
}  // namespace leaks_test
