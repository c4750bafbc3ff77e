#include "DialogDriver.h"
#include "ModuleTest.h"

namespace module_test {
namespace {

class ExportsTest : public ModuleTest {};

TEST_F(ExportsTest, ClassObjectIsAClassFactory) {
  for (const IID& iid : {IID_IUnknown, IID_IClassFactory}) {
    IUnknown* object = nullptr;
    ASSERT_EQ(S_OK,
              module_.get_class_object(__uuidof(CzdExpirationRulePlugin), iid, reinterpret_cast<void**>(&object)));
    EXPECT_TRUE(base::try_query<IClassFactory>(object));
    object->Release();
  }
}

TEST_F(ExportsTest, ThereIsOneClassObject) {
  const base::ComPtr<IClassFactory> one = module_.factory();
  const base::ComPtr<IClassFactory> two = module_.factory();
  EXPECT_EQ(one.GetInterfacePtr(), two.GetInterfacePtr());
}

TEST_F(ExportsTest, AnotherClassIsNotAvailable) {
  for (const CLSID& other : {CLSID_NULL, __uuidof(IkvPlugin), LIBID_zdExpirationRules}) {
    void* object = this;
    EXPECT_EQ(CLASS_E_CLASSNOTAVAILABLE, module_.get_class_object(other, IID_IClassFactory, &object));
    EXPECT_EQ(nullptr, object);
  }
}

TEST_F(ExportsTest, ClassObjectHasNoOtherInterface) {
  for (const IID& other : {IID_IDispatch, IID_IClassFactory2, IID_IMarshal, __uuidof(IkvPlugin)}) {
    void* object = this;
    EXPECT_EQ(E_NOINTERFACE, module_.get_class_object(__uuidof(CzdExpirationRulePlugin), other, &object));
    EXPECT_EQ(nullptr, object);
  }
}

TEST_F(ExportsTest, NullOutPointerOfTheClassObjectIsRefused) {
  EXPECT_EQ(E_POINTER, module_.get_class_object(__uuidof(CzdExpirationRulePlugin), IID_IClassFactory, nullptr));
  EXPECT_EQ(E_POINTER, module_.get_class_object(CLSID_NULL, IID_IClassFactory, nullptr));
}

TEST_F(ExportsTest, CannotUnloadWhileAnObjectIsAlive) {
  EXPECT_EQ(S_OK, module_.can_unload());
  base::ComPtr<IkvPlugin> plugin = module_.plugin();
  EXPECT_EQ(S_FALSE, module_.can_unload());
  base::ComPtr<IkvPlugin> another = module_.plugin();
  plugin = nullptr;
  EXPECT_EQ(S_FALSE, module_.can_unload());
  another = nullptr;
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(ExportsTest, CannotUnloadWhileTheClassFactoryIsReferenced) {
  base::ComPtr<IClassFactory> factory = module_.factory();
  EXPECT_EQ(S_FALSE, module_.can_unload());
  factory = nullptr;
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(ExportsTest, CannotUnloadWhileTheServerIsLocked) {
  {
    const base::ComPtr<IClassFactory> factory = module_.factory();
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
    EXPECT_EQ(S_OK, factory->LockServer(TRUE));
  }
  EXPECT_EQ(S_FALSE, module_.can_unload());
  EXPECT_EQ(S_OK, module_.factory()->LockServer(FALSE));
  EXPECT_EQ(S_FALSE, module_.can_unload());
  EXPECT_EQ(S_OK, module_.factory()->LockServer(FALSE));
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(ExportsTest, FailedCreationLeavesNoLock) {
  const base::ComPtr<IClassFactory> factory = module_.factory();
  void* object = this;
  EXPECT_EQ(E_NOINTERFACE, factory->CreateInstance(nullptr, IID_IMarshal, &object));
  EXPECT_EQ(nullptr, object);
}

TEST(ModuleLifetime, LoadsAndUnloadsAHundredTimesAndLeavesNothing) {
  ASSERT_EQ(nullptr, GetModuleHandleW(L"zdExpirationRules.dll"));
  const std::set<HWND> windows = test_support::windows_of_this_thread();
  for (int round = 0; round < 100; ++round) {
    {
      const Module module;
      const base::ComPtr<IkvPlugin> plugin = module.plugin();
      UINT count = 0;
      EXPECT_EQ(S_OK, plugin->GetTypeInfoCount(&count));
      VARIANT none = {};
      EXPECT_EQ(E_FAIL, plugin->DoCommand(0, none));
      EXPECT_EQ(1u, take_reports().size());
    }
    ASSERT_EQ(nullptr, GetModuleHandleW(L"zdExpirationRules.dll")) << "round " << round;
    ASSERT_EQ(nullptr, GetModuleHandleW(L"zdCommonRes.DLL")) << "round " << round;
  }
  EXPECT_EQ(windows, test_support::windows_of_this_thread());
}

TEST(ModuleLifetime, LoadsAndUnloadsWithAHostAndLeavesNothing) {
  for (int round = 0; round < 10; ++round) {
    {
      test_support::RecordingHost host;
      const Module module;
      const base::ComPtr<IkvPlugin> plugin = module.plugin();
      EXPECT_EQ(S_OK, plugin->Initialize(host.main_menu(), host.main_menu(), host.main_menu(), host.hot_keys(),
                                         _bstr_t(L"x"), nullptr));
    }
    ASSERT_EQ(nullptr, GetModuleHandleW(L"zdExpirationRules.dll")) << "round " << round;
    ASSERT_EQ(nullptr, GetModuleHandleW(L"zdCommonRes.DLL")) << "the shared texts are let go with the module";
  }
}

}  // namespace
}  // namespace module_test
