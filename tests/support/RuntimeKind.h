#pragma once

#include <gtest/gtest.h>

namespace test_support {

/// The fixture `Fixture` for tests that hold only with the functions of base/runtime. With a compiler for which the
/// module links the compiler's own runtime they are not run, and say so. Their program links `runtime_kind`.
template <class Fixture>
class NeedsReplacedRuntime : public Fixture {
 protected:
  void SetUp() override {
    if (!ZD_RUNTIME_REPLACED) GTEST_SKIP() << "not run: base/runtime was not tried with this compiler";
    Fixture::SetUp();
  }
};

}  // namespace test_support
