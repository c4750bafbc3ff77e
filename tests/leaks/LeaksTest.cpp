#include <gmock/gmock.h>

#include <functional>

#include "Depth.h"
#include "DialogScript.h"
#include "ExpectedReports.h"
#include "Footprint.h"
#include "RuleList.h"
#include "RuntimeKind.h"
#include "ScratchRoot.h"
#include "Session.h"
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

/// Does something again and again. Fails the test when this takes a block of memory or an index that does not come
/// back.
void expect_flat(const std::function<void()>& once) {
  // The system keeps a block from the first index on that is asked of it, be it for a measurement.
  footprint();
  for (int time = 0; time < warm_up; ++time) once();
  const Footprint before = footprint();
  for (int time = 0; time < repetitions; ++time) once();
  const Footprint after = footprint();
  EXPECT_LE(after.heap_blocks, before.heap_blocks);
  EXPECT_LE(after.private_bytes, before.private_bytes + heap_step);
  EXPECT_EQ(after.thread_local_index, before.thread_local_index);
  EXPECT_EQ(after.fiber_local_index, before.fiber_local_index);
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
  expect_flat([] {
    {
      RecordingHost host;
      const Module module;
      Session session(module, host, [] {});
      ASSERT_EQ(S_OK, session.initialize());
      session.end();
    }
    ASSERT_EQ(nullptr, GetModuleHandleW(L"zdExpirationRules.dll"));
  });
}

}  // namespace
}  // namespace leaks_test
