#include <optional>

#include "HostClasses.h"
#include "HostObjects.h"
#include "MemoryRuleStore.h"
#include "StoreSamples.h"

using namespace workbench;

namespace {

/// What a client in the host's process reaches through COM's own functions.
class HostClassesTest : public HostObjects {
 protected:
  template <class Interface>
  static HRESULT create(REFCLSID clsid, Interface** object) {
    return CoCreateInstance(clsid, nullptr, CLSCTX_ALL, __uuidof(Interface), reinterpret_cast<void**>(object));
  }

  std::shared_ptr<MemoryRuleStore> store_ = std::make_shared<MemoryRuleStore>();
  std::optional<HostClasses> classes_{std::in_place, store_, StoreListeners{}};
};

TEST_F(HostClassesTest, ClientCreatesTheThreeClasses) {
  store_->replace_content(sample_content());
  base::ComPtr<IkvStorage> storage;
  base::ComPtr<IkvTable> table;
  base::ComPtr<IkvRuleFilter> filter;
  ASSERT_EQ(create(__uuidof(kvStorage), &storage), S_OK);
  ASSERT_EQ(create(__uuidof(kvTable), &table), S_OK);
  ASSERT_EQ(create(__uuidof(kvRuleFilter), &filter), S_OK);
  filter->SetRuleID(2);
  EXPECT_EQ(base::ComPtr<IkvExpirationRuleService>(storage)->load_rules(filter, table), S_OK);
  EXPECT_EQ(row_count(table), 1);
  EXPECT_EQ(text_in(table, KVFIELD_RULE_NAME), L"second");
}

TEST_F(HostClassesTest, ObjectsAreNotAggregated) {
  base::ComPtr<IkvStorage> outer;
  ASSERT_EQ(create(__uuidof(kvStorage), &outer), S_OK);
  void* inner = this;
  EXPECT_EQ(CoCreateInstance(__uuidof(kvTable), outer, CLSCTX_ALL, __uuidof(IUnknown), &inner), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(inner, nullptr);
}

TEST_F(HostClassesTest, UnknownInterfaceLeavesNoObjectBehind) {
  IkvTable* wrong = nullptr;
  EXPECT_EQ(create(__uuidof(kvStorage), &wrong), E_NOINTERFACE);
  EXPECT_EQ(wrong, nullptr);
}

TEST_F(HostClassesTest, ClassesGoWithTheRegistration) {
  classes_.reset();
  base::ComPtr<IkvTable> table;
  EXPECT_EQ(create(__uuidof(kvTable), &table), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(store_.use_count(), 1);
}

TEST_F(HostClassesTest, ObjectOutlivesTheRegistration) {
  base::ComPtr<IkvStorage> storage;
  ASSERT_EQ(create(__uuidof(kvStorage), &storage), S_OK);
  classes_.reset();
  long ok = 5;
  EXPECT_EQ(base::ComPtr<IkvExpirationRuleService>(storage)->delete_rule(1, &ok), STG_E_FILENOTFOUND);
  EXPECT_EQ(ok, 0);
}

}  // namespace
