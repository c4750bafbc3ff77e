#include "FailingRuleStore.h"
#include "MemoryRuleStore.h"
#include "SqliteRuleStore.h"
#include "StoreContract.h"

using test_support::TemporaryFolder;
using Store = std::shared_ptr<workbench::RuleStore>;

std::vector<Implementation> implementations() {
  return {{"Sqlite",
           [](const TemporaryFolder& folder) -> Store {
             return workbench::open_sqlite_store(folder.path() / L"rules.db");
           }},
          {"Memory", [](const TemporaryFolder&) -> Store { return std::make_shared<workbench::MemoryRuleStore>(); }},
          {"Failing", [](const TemporaryFolder&) -> Store {
             return std::make_shared<workbench::FailingRuleStore>(std::make_shared<workbench::MemoryRuleStore>(), 0);
           }}};
}
