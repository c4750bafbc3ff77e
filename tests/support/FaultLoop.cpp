#include "FaultLoop.h"

#include <gtest/gtest.h>

namespace test_support {

std::size_t fail_each_call(const std::function<std::optional<std::string>(std::size_t number)>& run) {
  for (std::size_t number = 1;; ++number) {
    const std::optional<std::string> failed = run(number);
    if (testing::Test::HasFailure()) {
      ADD_FAILURE() << "when call " << number << " fails: " << failed.value_or("there is none");
      return number;
    }
    if (!failed) return number - 1;
  }
}

std::size_t fail_each_allocation(const std::function<bool(std::size_t number)>& run) {
  return fail_each_call(
      [&](std::size_t number) { return run(number) ? std::optional<std::string>("an allocation") : std::nullopt; });
}

}  // namespace test_support
