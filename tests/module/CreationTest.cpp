#include "ModuleTest.h"
#include "OuterObject.h"

namespace module_test {
namespace {

class CreationTest : public ModuleTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(1u, outer_.references);
    ModuleTest::TearDown();
  }

  HRESULT create(IUnknown* outer, REFIID iid, void** object) const {
    return module_.factory()->CreateInstance(outer, iid, object);
  }

  base::ComPtr<IUnknown> create_inner() {
    IUnknown* inner = nullptr;
    EXPECT_EQ(S_OK, create(&outer_, IID_IUnknown, reinterpret_cast<void**>(&inner)));
    outer_.inner = inner;
    return base::ComPtr<IUnknown>(inner, false);
  }

  test_support::OuterObject outer_;
};

TEST_F(CreationTest, EveryInterfaceOfTheMapCanBeAskedForAtOnce) {
  for (const IID& iid :
       {IID_IUnknown, IID_IDispatch, __uuidof(IkvPlugin), __uuidof(IzdExpirationRulesPlugin), IID_IProvideClassInfo}) {
    IUnknown* object = nullptr;
    ASSERT_EQ(S_OK, create(nullptr, iid, reinterpret_cast<void**>(&object)));
    EXPECT_EQ(1u, references(object));
    EXPECT_EQ(0u, object->Release());
  }
}

TEST_F(CreationTest, DispatchIsTheDefaultInterface) {
  const base::ComPtr<IkvPlugin> plugin = module_.plugin();
  EXPECT_EQ(base::try_query<IDispatch>(plugin).GetInterfacePtr(), static_cast<IDispatch*>(plugin.GetInterfacePtr()));
}

TEST_F(CreationTest, IdentityIsOneWhicheverInterfaceIsAsked) {
  const base::ComPtr<IkvPlugin> plugin = module_.plugin();
  const auto own = base::try_query<IzdExpirationRulesPlugin>(plugin);
  const auto info = base::try_query<IProvideClassInfo>(own);
  const base::ComPtr<IUnknown> identity = base::try_query<IUnknown>(plugin);
  EXPECT_EQ(identity.GetInterfacePtr(), base::try_query<IUnknown>(own).GetInterfacePtr());
  EXPECT_EQ(identity.GetInterfacePtr(), base::try_query<IUnknown>(info).GetInterfacePtr());
  EXPECT_EQ(plugin.GetInterfacePtr(), base::try_query<IkvPlugin>(info).GetInterfacePtr());
  EXPECT_EQ(4u, references(plugin));
}

TEST_F(CreationTest, ThereIsNoErrorInfoAndNoOtherInterface) {
  const base::ComPtr<IkvPlugin> plugin = module_.plugin();
  for (const IID& iid : {IID_ISupportErrorInfo, IID_IMarshal, IID_IProvideClassInfo2, IID_IPersist, IID_IClassFactory,
                         __uuidof(CzdExpirationRulePlugin)}) {
    void* object = this;
    EXPECT_EQ(E_NOINTERFACE, plugin->QueryInterface(iid, &object));
    EXPECT_EQ(nullptr, object);
  }
  EXPECT_EQ(E_POINTER, plugin->QueryInterface(IID_IUnknown, nullptr));
}

TEST_F(CreationTest, NullOutPointerIsRefused) {
  EXPECT_EQ(E_POINTER, create(nullptr, __uuidof(IkvPlugin), nullptr));
  EXPECT_EQ(E_POINTER, create(&outer_, IID_IUnknown, nullptr));
  EXPECT_EQ(E_POINTER, create(&outer_, __uuidof(IkvPlugin), nullptr));
}

TEST_F(CreationTest, OuterMayAskForTheUnknownOnly) {
  for (const IID& iid : {__uuidof(IkvPlugin), IID_IDispatch, IID_IMarshal}) {
    void* object = this;
    EXPECT_EQ(CLASS_E_NOAGGREGATION, create(&outer_, iid, &object));
    EXPECT_EQ(nullptr, object);
  }
  EXPECT_EQ(0, outer_.queries);
}

TEST_F(CreationTest, AggregateDelegatesToItsOuter) {
  const base::ComPtr<IUnknown> inner = create_inner();
  EXPECT_EQ(1u, outer_.references) << "an inner object does not reference its outer";

  IkvPlugin* plugin = nullptr;
  ASSERT_EQ(S_OK, outer_.QueryInterface(__uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin)));
  EXPECT_EQ(2u, outer_.references);
  EXPECT_EQ(3u, plugin->AddRef());
  EXPECT_EQ(2u, plugin->Release());
  EXPECT_EQ(static_cast<IUnknown*>(&outer_), base::try_query<IUnknown>(plugin).GetInterfacePtr());
  EXPECT_TRUE(base::try_query<IOther>(plugin)) << "the outer's own interfaces are reached from the inner";
  EXPECT_TRUE(base::try_query<IzdExpirationRulesPlugin>(plugin));
  EXPECT_EQ(1u, plugin->Release());
}

TEST_F(CreationTest, InnerUnknownHasAnIdentityAndACountOfItsOwn) {
  const base::ComPtr<IUnknown> inner = create_inner();
  EXPECT_NE(static_cast<IUnknown*>(&outer_), inner.GetInterfacePtr());
  EXPECT_EQ(inner.GetInterfacePtr(), base::try_query<IUnknown>(inner).GetInterfacePtr());
  EXPECT_EQ(1u, references(inner));
  EXPECT_EQ(0, outer_.queries);
  EXPECT_EQ(1u, outer_.references);
  EXPECT_FALSE(base::try_query<IOther>(inner)) << "the inner unknown is that of the inner object alone";
}

TEST_F(CreationTest, AggregateHoldsTheModuleUntilItsInnerIsReleased) {
  base::ComPtr<IUnknown> inner = create_inner();
  EXPECT_EQ(S_FALSE, module_.can_unload());
  inner = nullptr;
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(CreationTest, AggregateCanBeUsedAsAPlugin) {
  test_support::RecordingHost host;
  const base::ComPtr<IUnknown> inner = create_inner();
  {
    IkvPlugin* plugin = nullptr;
    ASSERT_EQ(S_OK, outer_.QueryInterface(__uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin)));
    EXPECT_EQ(S_OK, plugin->Initialize(host.main_menu(), host.main_menu(), host.main_menu(), host.hot_keys(),
                                       _bstr_t(L"x"), host.storage()));
    plugin->Release();
  }
  EXPECT_EQ(1u, outer_.references);
  EXPECT_EQ(2u, host.commands().size());
}

}  // namespace
}  // namespace module_test
