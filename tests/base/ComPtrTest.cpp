#include <gtest/gtest.h>

#include <functional>

#include "ComPtr.h"
#include "SampleInterfaces.h"
#include "ThrownBy.h"

namespace base {
namespace {

using test_support::thrown_by;

/// An object on the stack whose `QueryInterface` returns what the test says.
class Odd final : public ISample {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    asked = iid;
    if (answers_object) {
      *object = this;
      AddRef();
    }
    return hresult;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return ++references; }
  STDMETHODIMP_(ULONG) Release() noexcept override {
    if (on_release) on_release();
    return --references;
  }
  int STDMETHODCALLTYPE Number() noexcept override { return 1; }

  HRESULT hresult = S_OK;
  bool answers_object = true;
  IID asked = {};
  ULONG references = 1;
  std::function<void()> on_release;
};

TEST(ComPtr, QueryHoldsOneReference) {
  Odd object;
  {
    const ComPtr<ISample> found = query<ISample>(&object);
    EXPECT_EQ(static_cast<ISample*>(found), &object);
    EXPECT_EQ(object.asked, __uuidof(ISample));
    EXPECT_EQ(object.references, 2u);
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(ComPtr, MissingInterfaceIsNullToTryQueryAndAnErrorToQuery) {
  Odd object;
  object.hresult = E_NOINTERFACE;
  object.answers_object = false;
  EXPECT_FALSE(try_query<ISample>(&object));
  EXPECT_EQ(thrown_by([&] { query<ISample>(&object); }), E_POINTER);
}

TEST(ComPtr, NullSourceCountsAsMissingInterface) {
  EXPECT_FALSE(try_query<ISample>(nullptr));
  EXPECT_EQ(thrown_by([] { query<ISample>(nullptr); }), E_POINTER);
}

TEST(ComPtr, OtherFailuresOfAQueryAreThrownAsTheyStand) {
  for (const HRESULT failure : {E_FAIL, E_OUTOFMEMORY, E_POINTER, static_cast<HRESULT>(0x80041234)}) {
    Odd object;
    object.hresult = failure;
    object.answers_object = false;
    EXPECT_EQ(thrown_by([&] { try_query<ISample>(&object); }), failure);
    EXPECT_EQ(thrown_by([&] { query<ISample>(&object); }), failure);
  }
}

TEST(ComPtr, SuccessWithoutAnObjectIsNull) {
  for (const HRESULT success : {S_OK, S_FALSE}) {
    Odd object;
    object.hresult = success;
    object.answers_object = false;
    EXPECT_FALSE(try_query<ISample>(&object));
    EXPECT_EQ(thrown_by([&] { query<ISample>(&object); }), E_POINTER);
  }
}

TEST(ComPtr, PositiveResultWithAnObjectIsSuccess) {
  Odd object;
  object.hresult = S_FALSE;
  { EXPECT_TRUE(query<ISample>(&object)); }
  EXPECT_EQ(object.references, 1u);
}

TEST(ComPtr, FetchIntoKeepsWhatTheCallGave) {
  Odd object;
  ComPtr<ISample> target;
  const HRESULT hresult = fetch_into(target, [&](ISample** out) {
    object.AddRef();
    *out = &object;
    return S_FALSE;
  });
  EXPECT_EQ(hresult, S_FALSE);
  EXPECT_EQ(static_cast<ISample*>(target), &object);
  EXPECT_EQ(object.references, 2u);
}

TEST(ComPtr, FetchIntoReleasesTheOldObjectBeforeTheCall) {
  Odd object;
  ComPtr<ISample> target(&object);
  fetch_into(target, [&](ISample**) {
    EXPECT_EQ(object.references, 1u);
    EXPECT_FALSE(target);
    return S_OK;
  });
  EXPECT_EQ(object.references, 1u);
}

// As when a call lets messages through, and with them another call that fills the same target.
TEST(ComPtr, FetchIntoReleasesWhatFilledTheTargetMeanwhileOnceItIsReplaced) {
  Odd meanwhile;
  Odd given;
  ComPtr<ISample> target;
  int released = 0;
  meanwhile.on_release = [&] {
    ++released;
    EXPECT_EQ(static_cast<ISample*>(target), &given);
  };
  fetch_into(target, [&](ISample** out) {
    target = &meanwhile;
    given.AddRef();
    *out = &given;
    return S_OK;
  });
  EXPECT_EQ(released, 1);
  EXPECT_EQ(meanwhile.references, 1u);
}

TEST(ComPtr, UntouchedOutParameterGivesNull) {
  for (const HRESULT hresult : {S_OK, S_FALSE, E_FAIL}) {
    Odd object;
    ComPtr<ISample> target(&object);
    EXPECT_EQ(fetch_into(target, [&](ISample**) { return hresult; }), hresult);
    EXPECT_FALSE(target);
  }
}

TEST(ComPtr, ObjectGivenByAFailingCallIsNotLeaked) {
  Odd object;
  {
    ComPtr<ISample> target;
    fetch_into(target, [&](ISample** out) {
      object.AddRef();
      *out = &object;
      return E_FAIL;
    });
  }
  EXPECT_EQ(object.references, 1u);
}

TEST(ComPtr, ReleaseReleasesOnce) {
  Odd object;
  ComPtr<ISample> target(&object);
  release(target);
  EXPECT_EQ(object.references, 1u);
  EXPECT_FALSE(target);
  release(target);
  EXPECT_EQ(object.references, 1u);
}

/// A class object of this process whose objects are `Odd`.
class OddFactory final : public IClassFactory {
 public:
  OddFactory() {
    EXPECT_EQ(CoRegisterClassObject(__uuidof(IOther), this, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie_), S_OK);
  }
  ~OddFactory() { CoRevokeClassObject(cookie_); }

  STDMETHODIMP QueryInterface(REFIID, void** out) noexcept override {
    *out = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return 1; }
  STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown*, REFIID iid, void** out) noexcept override {
    return object.QueryInterface(iid, out);
  }
  STDMETHODIMP LockServer(BOOL) noexcept override { return S_OK; }

  Odd object;

 private:
  DWORD cookie_ = 0;
};

TEST(ComPtr, CreateInstanceHoldsOneReference) {
  OddFactory factory;
  {
    const ComPtr<ISample> created = create_instance<ISample>(__uuidof(IOther));
    EXPECT_EQ(static_cast<ISample*>(created), &factory.object);
  }
  EXPECT_EQ(factory.object.references, 1u);
}

TEST(ComPtr, CreateInstanceThrowsTheFailureAsItStands) {
  EXPECT_EQ(thrown_by([] { create_instance<ISample>(__uuidof(ISample)); }), REGDB_E_CLASSNOTREG);
  OddFactory factory;
  factory.object.answers_object = false;
  factory.object.hresult = E_ACCESSDENIED;
  EXPECT_EQ(thrown_by([] { create_instance<ISample>(__uuidof(IOther)); }), E_ACCESSDENIED);
}

TEST(ComPtr, CreateInstanceWithoutAnObjectIsAnError) {
  OddFactory factory;
  factory.object.answers_object = false;
  EXPECT_TRUE(FAILED(thrown_by([] { create_instance<ISample>(__uuidof(IOther)); })));
}

}  // namespace
}  // namespace base
