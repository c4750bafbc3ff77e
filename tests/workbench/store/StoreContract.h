#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

#include "FailingRuleStore.h"
#include "MemoryRuleStore.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"

/// A kind of store, which the tests of the contract create empty.
struct Implementation {
  const char* name;
  std::shared_ptr<workbench::RuleStore> (*create)(const test_support::TemporaryFolder& folder);
};

inline void PrintTo(const Implementation& implementation, std::ostream* stream) { *stream << implementation.name; }

/// Runs a test on every kind of store: all of them keep the same contract.
class StoreContract : public testing::TestWithParam<Implementation> {
 protected:
  test_support::TemporaryFolder folder_;
  std::shared_ptr<workbench::RuleStore> store_ = GetParam().create(folder_);
};

/// The kinds of store, as the parameters of a suite.
inline auto every_store() {
  using test_support::TemporaryFolder;
  using Store = std::shared_ptr<workbench::RuleStore>;
  return testing::Values(
      Implementation{"Sqlite",
                     [](const TemporaryFolder& folder) -> Store {
                       return workbench::open_sqlite_store(folder.path() / L"rules.db");
                     }},
      Implementation{"Memory",
                     [](const TemporaryFolder&) -> Store { return std::make_shared<workbench::MemoryRuleStore>(); }},
      Implementation{"Failing", [](const TemporaryFolder&) -> Store {
                       return std::make_shared<workbench::FailingRuleStore>(
                           std::make_shared<workbench::MemoryRuleStore>(), 0);
                     }});
}

inline std::string store_name(const testing::TestParamInfo<Implementation>& test) { return test.param.name; }
