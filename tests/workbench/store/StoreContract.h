#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "RuleStore.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"

/// A kind of store, which the tests of the contract create empty; null where what it needs is not installed.
struct Implementation {
  const char* name;
  std::shared_ptr<workbench::RuleStore> (*create)(const test_support::TemporaryFolder& folder);
};

inline void PrintTo(const Implementation& implementation, std::ostream* stream) { *stream << implementation.name; }

/// The kinds of store that this test program tries.
std::vector<Implementation> implementations();

/// Runs a test on every kind of store: all of them keep the same contract.
class StoreContract : public testing::TestWithParam<Implementation> {
 protected:
  void SetUp() override {
    if (!store_) GTEST_SKIP() << "not run: what this kind of store needs is not installed";
  }

  test_support::TemporaryFolder folder_;
  std::shared_ptr<workbench::RuleStore> store_ = GetParam().create(folder_);
};

/// The kinds of store, as the parameters of a suite.
inline auto every_store() { return testing::ValuesIn(implementations()); }

inline std::string store_name(const testing::TestParamInfo<Implementation>& test) { return test.param.name; }
