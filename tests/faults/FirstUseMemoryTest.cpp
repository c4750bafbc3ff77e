#include <cstdio>
#include <optional>

#include "Depth.h"
#include "FailingMemory.h"
#include "FaultsTest.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingMemory;
using test_support::FaultDuration;
using test_support::Memory;

class FirstUseMemory : public testing::TestWithParam<SystemScenario> {
 protected:
  void SetUp() override {
    play_without(0, FaultDuration::once);
    ASSERT_FALSE(HasFailure()) << "when nothing fails";
  }

  /// A newly loaded module without one allocation, or without it and all that follow. Returns what failed.
  static std::optional<std::string> play_without(std::size_t number, FaultDuration duration) {
    const module_test::Module module;
    std::optional<FailingMemory> memory;
    GetParam().play(module, {[&] { memory.emplace(module.handle(), number, Memory::any, duration); },
                             [&] { memory->clear_faults(); }, [] { return std::set<std::string>(); }});
    test_support::take_reports();
    return memory->has_failed() ? std::optional<std::string>("an allocation") : std::nullopt;
  }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
};

TEST_P(FirstUseMemory, LeadsToTheDocumentedResultAndTearsNothing) {
  for (const FaultDuration duration : {FaultDuration::once, FaultDuration::lasting}) {
    const std::size_t injected =
        test_support::fail_each_call([&](std::size_t number) { return play_without(number, duration); });
    EXPECT_GT(injected, 0u);
    std::printf("[ faults ] %s: allocations%s: %zu\n", GetParam().name.c_str(),
                duration == FaultDuration::lasting ? ", from then on" : "", injected);
    if (HasFailure() || !test_support::deep()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Of, FirstUseMemory, testing::ValuesIn(every_first_use()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
