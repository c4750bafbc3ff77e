#include <gtest/gtest.h>

#include "ComModule.h"
#include "ComObject.h"
#include "OuterObject.h"
#include "SampleInterfaces.h"

namespace platform {
namespace {

/// What happened to the objects of a test.
struct Events {
  int constructed = 0;
  int final_released = 0;
  int destroyed = 0;
  LONG locks_at_final_release = -1;
  HRESULT final_construct_result = S_OK;
  IUnknown* in_final_release = nullptr;  ///< set for the length of FinalRelease
};
Events events;

class Sample : public ISample {
 public:
  Sample() { ++events.constructed; }

  HRESULT FinalConstruct() noexcept { return events.final_construct_result; }
  void FinalRelease() noexcept {
    ++events.final_released;
    events.locks_at_final_release = ComModule::instance().lock_count();
    // Other objects that are released may still ask this one for an interface and drop it again.
    IUnknown* self = nullptr;
    if (SUCCEEDED(QueryInterface(__uuidof(ISample), reinterpret_cast<void**>(&self)))) {
      events.in_final_release = self;
      self->Release();
    }
  }
  IUnknown* find_interface(REFIID iid) noexcept { return iid == __uuidof(ISample) ? this : nullptr; }

  int STDMETHODCALLTYPE Number() override { return 42; }

 protected:
  virtual ~Sample() { ++events.destroyed; }
};

class ComObjectTest : public testing::Test {
 protected:
  void SetUp() override {
    events = {};
    ASSERT_EQ(locks(), 0);
  }
  void TearDown() override {
    EXPECT_EQ(events.destroyed, events.constructed);
    EXPECT_EQ(locks(), 0);
  }

  static LONG locks() { return ComModule::instance().lock_count(); }

  static ISample* create() {
    ISample* sample = nullptr;
    EXPECT_EQ(create_com_object<Sample>(nullptr, __uuidof(ISample), reinterpret_cast<void**>(&sample)), S_OK);
    return sample;
  }

  IUnknown* create_inner() {
    EXPECT_EQ(create_com_object<Sample>(&outer_, IID_IUnknown, reinterpret_cast<void**>(&outer_.inner)), S_OK);
    return outer_.inner;
  }

  test_support::OuterObject outer_;
};

TEST_F(ComObjectTest, IsCreatedWithOneReferenceAndOneLock) {
  ISample* sample = create();
  EXPECT_EQ(locks(), 1);
  EXPECT_EQ(sample->Number(), 42);
  EXPECT_EQ(sample->AddRef(), 2u);
  EXPECT_EQ(sample->Release(), 1u);
  EXPECT_EQ(events.destroyed, 0);
  EXPECT_EQ(sample->Release(), 0u);
  EXPECT_EQ(events.destroyed, 1);
}

TEST_F(ComObjectTest, EveryObjectHoldsALockOfItsOwn) {
  ISample* one = create();
  ISample* two = create();
  EXPECT_EQ(locks(), 2);
  one->Release();
  EXPECT_EQ(locks(), 1);
  two->Release();
}

TEST_F(ComObjectTest, ReturnsTheSameUnknownForEveryInterface) {
  ISample* sample = create();
  IUnknown* first = nullptr;
  IUnknown* second = nullptr;
  ISample* again = nullptr;
  ASSERT_EQ(sample->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&first)), S_OK);
  ASSERT_EQ(first->QueryInterface(__uuidof(ISample), reinterpret_cast<void**>(&again)), S_OK);
  ASSERT_EQ(again->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&second)), S_OK);
  EXPECT_EQ(first, second);
  EXPECT_EQ(sample, again);
  second->Release();
  again->Release();
  EXPECT_EQ(first->Release(), 1u);
  sample->Release();
}

TEST_F(ComObjectTest, UnknownInterfaceClearsTheOutPointer) {
  ISample* sample = create();
  void* object = sample;
  EXPECT_EQ(sample->QueryInterface(__uuidof(IOther), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(sample->QueryInterface(__uuidof(ISample), nullptr), E_POINTER);
  EXPECT_EQ(sample->Release(), 0u);
}

TEST_F(ComObjectTest, NullOutPointerIsRefusedBeforeAnythingIsCreated) {
  EXPECT_EQ(create_com_object<Sample>(nullptr, __uuidof(ISample), nullptr), E_POINTER);
  EXPECT_EQ(create_com_object<Sample>(&outer_, __uuidof(IOther), nullptr), E_POINTER);
  EXPECT_EQ(events.constructed, 0);
}

TEST_F(ComObjectTest, MissingInterfaceAtCreationDestroysTheObject) {
  void* object = &outer_;
  EXPECT_EQ(create_com_object<Sample>(nullptr, __uuidof(IOther), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(events.constructed, 1);
  EXPECT_EQ(events.destroyed, 1);
}

TEST_F(ComObjectTest, FailingFinalConstructDestroysTheObjectAndIsReturned) {
  for (const HRESULT failure : {E_OUTOFMEMORY, E_ACCESSDENIED, static_cast<HRESULT>(0x80041234)}) {
    events = {};
    events.final_construct_result = failure;
    void* object = &outer_;
    EXPECT_EQ(create_com_object<Sample>(nullptr, __uuidof(ISample), &object), failure);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(events.destroyed, 1);
    EXPECT_EQ(locks(), 0);
  }
}

TEST_F(ComObjectTest, FailingFinalConstructOfAnAggregateLeavesTheOuterAlone) {
  events.final_construct_result = E_FAIL;
  void* object = &outer_;
  EXPECT_EQ(create_com_object<Sample>(&outer_, IID_IUnknown, &object), E_FAIL);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(events.destroyed, 1);
  EXPECT_EQ(outer_.references, 1u);
}

TEST_F(ComObjectTest, PositiveResultOfFinalConstructIsSuccess) {
  events.final_construct_result = S_FALSE;
  ISample* sample = create();
  ASSERT_NE(sample, nullptr);
  sample->Release();
}

TEST_F(ComObjectTest, IsStillWholeAndLockedDuringFinalRelease) {
  ISample* sample = create();
  sample->Release();
  EXPECT_EQ(events.final_released, 1);
  EXPECT_EQ(events.in_final_release, sample);
  EXPECT_EQ(events.locks_at_final_release, 1);
  EXPECT_EQ(events.destroyed, 1);
}

TEST_F(ComObjectTest, OuterMayAskForTheUnknownOnly) {
  void* object = &outer_;
  EXPECT_EQ(create_com_object<Sample>(&outer_, __uuidof(ISample), &object), CLASS_E_NOAGGREGATION);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(events.constructed, 0);
}

TEST_F(ComObjectTest, AggregateIsCreatedWithoutAReferenceToItsOuter) {
  IUnknown* inner = create_inner();
  EXPECT_EQ(outer_.references, 1u);
  EXPECT_EQ(outer_.queries, 0);
  EXPECT_EQ(inner->Release(), 0u);
}

TEST_F(ComObjectTest, AggregatedInterfaceBelongsToTheOuter) {
  IUnknown* inner = create_inner();
  ISample* sample = nullptr;
  ASSERT_EQ(outer_.QueryInterface(__uuidof(ISample), reinterpret_cast<void**>(&sample)), S_OK);
  EXPECT_EQ(outer_.references, 2u);
  EXPECT_EQ(sample->AddRef(), 3u);
  EXPECT_EQ(sample->Release(), 2u);

  IUnknown* identity = nullptr;
  ASSERT_EQ(sample->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity)), S_OK);
  EXPECT_EQ(identity, static_cast<IUnknown*>(&outer_));
  identity->Release();

  IUnknown* other = nullptr;
  EXPECT_EQ(sample->QueryInterface(__uuidof(IOther), reinterpret_cast<void**>(&other)), S_OK);
  other->Release();
  sample->Release();
  EXPECT_EQ(outer_.references, 1u);
  inner->Release();
}

TEST_F(ComObjectTest, InnerUnknownKeepsItsOwnIdentityAndCount) {
  IUnknown* inner = create_inner();
  IUnknown* same = nullptr;
  ASSERT_EQ(inner->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&same)), S_OK);
  EXPECT_EQ(same, inner);
  EXPECT_EQ(outer_.references, 1u);
  EXPECT_EQ(same->Release(), 1u);
  void* object = &outer_;
  EXPECT_EQ(inner->QueryInterface(__uuidof(IOther), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(inner->Release(), 0u);
  EXPECT_EQ(events.destroyed, 1);
}

}  // namespace
}  // namespace platform
