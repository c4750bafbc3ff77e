#pragma once

#include <cstdlib>
#include <string_view>

namespace test_support {

/// Whether the run plays every repetition to its end, as `./test --deep` does. Otherwise a test runs each kind of its
/// cases at least once, so that a run takes minutes.
inline bool deep() {
  const char* depth = std::getenv("ZD_TEST_DEPTH");
  return depth && std::string_view(depth) == "deep";
}

/// The number of repetitions for the depth of this run.
inline int repetitions(int all, int few) { return deep() ? all : few; }

}  // namespace test_support
