#include <gmock/gmock.h>

#include <functional>

#include "Clerk.h"
#include "ExpectedReports.h"
#include "Footprint.h"
#include "ScratchRoot.h"
#include "Session.h"

namespace leaks_test {
namespace {

using faults_test::Clerk;
using faults_test::Session;
using module_test::Module;
using test_support::FakeHost;
using test_support::HostRule;

constexpr int warm_up = 100;
constexpr int repetitions = 1000;
// Far below one block and one kilobyte for each repetition, far above what the system's own caches vary by.
constexpr std::size_t blocks_of_the_system = repetitions / 5;
// Not all of a load comes back: six small blocks stay. What they take is within the bound of the private bytes.
constexpr std::size_t blocks_of_loads = std::size_t{repetitions} * 6 + blocks_of_the_system;
constexpr std::size_t bytes_of_the_system = std::size_t{repetitions} * 1024;

const HostRule stored_rule = {7, L"IF quarter", 2, 0, 0, 15, 1, 3, 5, 1, 0};

/// Does something again and again. Fails the test when this takes memory that does not come back.
void expect_flat(const std::function<void()>& once, std::size_t more_blocks = blocks_of_the_system) {
  for (int time = 0; time < warm_up; ++time) once();
  const Footprint before = footprint();
  for (int time = 0; time < repetitions; ++time) once();
  const Footprint after = footprint();
  EXPECT_LT(after.heap_blocks, before.heap_blocks + more_blocks) << "from " << before.heap_blocks;
  EXPECT_LT(after.private_bytes, before.private_bytes + bytes_of_the_system) << "from " << before.private_bytes;
}

class LeaksTest : public testing::Test {
 protected:
  LeaksTest() { host_.rules() = {stored_rule}; }
  void TearDown() override { EXPECT_TRUE(test_support::take_reports().empty()); }

  /// A plug-in does something again and again, and is let go: nothing of it is left.
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
  FakeHost host_;
};

TEST_F(LeaksTest, AThousandRuleListsLeaveNothing) {
  repeat([](Session& session) {
    const Clerk clerk({});
    ASSERT_EQ(S_OK, session.command());
    ASSERT_EQ(1, clerk.lists());
  });
}

TEST_F(LeaksTest, AThousandEditorsLeaveNothing) {
  repeat([](Session& session) {
    const Clerk clerk({}, {L"another name", {}, {}, {}});
    ASSERT_EQ(S_OK, session.show(stored_rule.id));
    ASSERT_EQ(1, clerk.editors());
  });
}

TEST_F(LeaksTest, AThousandLoadsAndUnloadsLeaveNoIndexAndUnderAKilobyteEach) {
  expect_flat(
      [this] {
        {
          const Module module;
          Session session(module, host_, [] {});
          ASSERT_EQ(S_OK, session.initialize());
          session.end();
        }
        host_.calls().forget();
        ASSERT_EQ(nullptr, GetModuleHandleW(L"zdExpirationRules.dll"));
      },
      blocks_of_loads);
}

}  // namespace
}  // namespace leaks_test
