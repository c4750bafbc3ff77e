#include <gtest/gtest.h>

#include "ClassFactory.h"
#include "SampleInterfaces.h"

namespace platform {
namespace {

/// What the factory passed on to its creator.
struct Request {
  IUnknown* outer = nullptr;
  IID iid = {};
  void** object = nullptr;
};
Request request;

constexpr HRESULT creator_result = static_cast<HRESULT>(0x80045678);

HRESULT create(IUnknown* outer, REFIID iid, void** object) noexcept {
  request = {outer, iid, object};
  return creator_result;
}

class ClassFactoryTest : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(locks(), 0); }
  void TearDown() override { EXPECT_EQ(locks(), 0); }

  static LONG locks() { return ComModule::instance().lock_count(); }

  ClassFactory factory_{&create};
  const ClassEntry classes_[1] = {{&__uuidof(ISample), &factory_}};
};

TEST_F(ClassFactoryTest, ReferencesTogetherHoldOneLock) {
  EXPECT_EQ(factory_.AddRef(), 1u);
  EXPECT_EQ(locks(), 1);
  EXPECT_EQ(factory_.AddRef(), 2u);
  EXPECT_EQ(locks(), 1);
  EXPECT_EQ(factory_.Release(), 1u);
  EXPECT_EQ(locks(), 1);
  EXPECT_EQ(factory_.Release(), 0u);
}

TEST_F(ClassFactoryTest, ServerLocksCountOneByOne) {
  EXPECT_EQ(factory_.LockServer(TRUE), S_OK);
  EXPECT_EQ(factory_.LockServer(2), S_OK);
  EXPECT_EQ(locks(), 2);
  EXPECT_EQ(factory_.LockServer(FALSE), S_OK);
  EXPECT_EQ(locks(), 1);
  EXPECT_EQ(factory_.LockServer(FALSE), S_OK);
}

TEST_F(ClassFactoryTest, IsAnUnknownAndAClassFactory) {
  for (const IID& iid : {IID_IUnknown, IID_IClassFactory}) {
    void* object = nullptr;
    EXPECT_EQ(factory_.QueryInterface(iid, &object), S_OK);
    EXPECT_EQ(object, static_cast<IClassFactory*>(&factory_));
    factory_.Release();
  }
}

TEST_F(ClassFactoryTest, UnknownInterfaceClearsTheOutPointer) {
  void* object = this;
  EXPECT_EQ(factory_.QueryInterface(IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(factory_.QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ClassFactoryTest, PassesTheRequestToItsCreator) {
  void* object = nullptr;
  EXPECT_EQ(factory_.CreateInstance(&factory_, __uuidof(ISample), &object), creator_result);
  EXPECT_EQ(request.outer, &factory_);
  EXPECT_EQ(request.iid, __uuidof(ISample));
  EXPECT_EQ(request.object, &object);
}

TEST_F(ClassFactoryTest, ClassTableReturnsTheFactoryOfTheClass) {
  IClassFactory* found = nullptr;
  EXPECT_EQ(get_class_object(classes_, __uuidof(ISample), IID_IClassFactory, reinterpret_cast<void**>(&found)), S_OK);
  EXPECT_EQ(found, &factory_);
  EXPECT_EQ(locks(), 1);
  found->Release();
}

TEST_F(ClassFactoryTest, ClassTableRefusesWhatItDoesNotHold) {
  void* object = this;
  EXPECT_EQ(get_class_object(classes_, __uuidof(IOther), IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
  EXPECT_EQ(object, nullptr);
  object = this;
  EXPECT_EQ(get_class_object(classes_, __uuidof(ISample), IID_IDispatch, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(get_class_object(classes_, __uuidof(ISample), IID_IClassFactory, nullptr), E_POINTER);
}

}  // namespace
}  // namespace platform
