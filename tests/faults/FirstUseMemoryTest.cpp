#include <optional>

#include "FailingMemory.h"
#include "FaultsTest.h"
#include "RuntimeKind.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

using test_support::FailingMemory;
using test_support::FaultDuration;
using test_support::Memory;

class FirstUse : public testing::TestWithParam<SystemScenario> {
 protected:
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
using FirstUseMemory = test_support::NeedsReplacedRuntime<FirstUse>;

TEST_P(FirstUseMemory, LeadsToTheDocumentedResultAndTearsNothing) {
  EXPECT_GT(fail_each_call_of(GetParam().name, "allocations", play_without), 0u);
}

INSTANTIATE_TEST_SUITE_P(Of, FirstUseMemory, testing::ValuesIn(without_memory(every_first_use(), {"FirstObject"})),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace faults_test
