#pragma once

#include <windows.h>
#include <comdef.h>

#include <atomic>
#include <new>
#include <string>
#include <tuple>
#include <utility>

#include "Bstr.h"

namespace workbench {

/// How many host objects are alive in this process. It returns to its old value once every reference is released.
inline std::atomic<long> live_dispatch_objects{0};

/// Base of the objects that the host hands out: implements `Interfaces`, `IDispatch` and `IUnknown`, counts references,
/// starts with one reference and destroys itself at the last release. Clients call through the method tables: the
/// late-binding methods know no names. Objects belong to the thread that created them.
template <class... Interfaces>
class DispatchObject : public Interfaces... {
 public:
  DispatchObject(const DispatchObject&) = delete;
  DispatchObject& operator=(const DispatchObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) noexcept final {
    if (!object) return E_POINTER;
    *object = find_interface(iid);
    if (!*object) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }

  ULONG STDMETHODCALLTYPE AddRef() noexcept final { return ++references_; }

  ULONG STDMETHODCALLTYPE Release() noexcept final {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) noexcept final {
    if (!count) return E_POINTER;
    *count = 0;
    return S_OK;
  }

  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** info) noexcept final {
    if (info) *info = nullptr;
    return E_NOTIMPL;
  }

  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) noexcept final {
    return DISP_E_UNKNOWNNAME;
  }

  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) noexcept final {
    return DISP_E_MEMBERNOTFOUND;
  }

 protected:
  DispatchObject() noexcept { ++live_dispatch_objects; }
  virtual ~DispatchObject() { --live_dispatch_objects; }

 private:
  using First = std::tuple_element_t<0, std::tuple<Interfaces...>>;

  void* find_interface(REFIID iid) noexcept {
    void* found = nullptr;
    if (iid == __uuidof(IUnknown) || iid == __uuidof(IDispatch)) found = static_cast<First*>(this);
    ((iid == __uuidof(Interfaces) ? found = static_cast<Interfaces*>(this) : nullptr), ...);
    return found;
  }

  ULONG references_ = 1;
};

/// A new object with one reference, which belongs to the caller. Throws what its constructor throws.
template <class Object, class... Arguments>
Object* make_object(Arguments&&... arguments) {
  return new Object(std::forward<Arguments>(arguments)...);
}

/// The text of a string argument; null is an empty one.
inline std::wstring text_of(BSTR text) { return std::wstring(base::view_of(text)); }

/// Runs the body of a COM method. An exception becomes an HRESULT: that of a `_com_error`, E_OUTOFMEMORY or E_FAIL.
template <class Body>
HRESULT com_method(Body&& body) noexcept {
  try {
    return std::forward<Body>(body)();
  } catch (const _com_error& error) {
    return error.Error();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_FAIL;
  }
}

}  // namespace workbench

/// Fills a slot that is never called.
#define KV_UNUSED_SLOT(slot) \
  HRESULT STDMETHODCALLTYPE Reserved##slot() noexcept override { return E_NOTIMPL; }
