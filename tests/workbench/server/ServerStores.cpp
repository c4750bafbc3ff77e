#include "StoreContract.h"
#include "TestSchema.h"
#include "TestServer.h"

std::vector<Implementation> implementations() {
  return {{"Server", [](const test_support::TemporaryFolder&) -> std::shared_ptr<workbench::RuleStore> {
             if (!test_support::test_server()) return nullptr;
             return TestSchema().open();
           }}};
}
