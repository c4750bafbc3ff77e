#pragma once

#include <objbase.h>
#include <windows.h>
#include <oleauto.h>

#include <new>
#include <utility>

/// Overrides a slot that the module never calls.
#define NOT_CALLED(slot) \
  HRESULT STDMETHODCALLTYPE Reserved##slot() override { return E_NOTIMPL; }

/// Base of the objects that this host hands to the module. It returns `Interfaces`, `IDispatch` and `IUnknown`, counts
/// references, and destroys itself at the last release. An object is created with one reference, which belongs to its
/// creator. The module calls through the method tables, so late binding is not offered.
template <class First, class... Others>
class Object : public First, public Others... {
 public:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) final {
    if (!object) return E_POINTER;
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IDispatch || iid == __uuidof(First)) *object = static_cast<First*>(this);
    ((iid == __uuidof(Others) ? void(*object = static_cast<Others*>(this)) : void()), ...);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() final { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) final { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) final {
    return E_NOTIMPL;
  }

 protected:
  Object() = default;
  virtual ~Object() = default;

 private:
  ULONG references_ = 1;
};

/// Runs the body of a COM method, which no exception may leave.
template <class Body>
HRESULT com_method(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

/// Hands out a number through an out parameter.
inline HRESULT hand_out(long* out, long number) noexcept {
  if (!out) return E_POINTER;
  *out = number;
  return S_OK;
}

/// Hands out a new object through an out parameter.
template <class Interface, class Make>
HRESULT hand_out(Interface** object, Make&& make) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  return com_method([&] {
    *object = std::forward<Make>(make)();
    return S_OK;
  });
}
