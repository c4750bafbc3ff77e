#include <gtest/gtest.h>

#include "DocumentedNumbers.h"
#include "SystemScenarios.h"

namespace faults_test {
namespace {

constexpr char memory_and_host[] = "How many";
constexpr char system_calls[] = "System faults";
constexpr char first_use_memory[] = "Memory at first use";

TEST(DocumentedNumbers, OfTheHostAndOfMemoryAddUp) {
  for (std::size_t column = 0; column < 5; ++column) {
    std::size_t sum = 0;
    for (const Scenario& scenario : every_scenario()) sum += documented_number(memory_and_host, scenario.name, column);
    EXPECT_EQ(documented_number(memory_and_host, "together", column), sum) << "column " << column;
  }
}

TEST(DocumentedNumbers, OfTheSystemAddUp) {
  for (std::size_t column = 0; column < 2; ++column) {
    std::size_t sum = 0;
    for (const SystemScenario& scenario : every_system_scenario()) {
      sum += documented_number(system_calls, scenario.name, column);
    }
    EXPECT_EQ(documented_number(system_calls, "together", column), sum) << "column " << column;
  }
}

TEST(DocumentedNumbers, OfMemoryAtFirstUseAddUp) {
  for (std::size_t column = 0; column < 2; ++column) {
    std::size_t sum = 0;
    for (const SystemScenario& scenario : every_first_use()) {
      sum += documented_number(first_use_memory, scenario.name, column);
    }
    EXPECT_EQ(documented_number(first_use_memory, "together", column), sum) << "column " << column;
  }
}

TEST(DocumentedNumbers, OfWhatIsNotThereAreRefused) {
  EXPECT_THROW(documented_number(system_calls, "Nothing", 0), std::runtime_error);
  EXPECT_THROW(documented_number("Nowhere", "List", 0), std::runtime_error);
}

}  // namespace
}  // namespace faults_test
