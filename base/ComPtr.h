#pragma once

#include <objbase.h>
#include <windows.h>
#include <comdef.h>

namespace base {

template <class Interface>
inline const IID& interface_id() noexcept {
  return __uuidof(Interface);
}

/// The system's reference-counted pointer for one interface.
template <class Interface>
using ComPtr = _com_ptr_t<_com_IIID_getter<Interface, &interface_id<Interface>>>;

/// Takes over a reference that belongs to the caller.
template <class Interface>
ComPtr<Interface> own(Interface* object) noexcept {
  return ComPtr<Interface>(object, false);
}

/// Asks `source` for an interface. Null when `source` is null or does not have the interface; throws any other failure
/// as a `_com_error`.
template <class Interface>
ComPtr<Interface> try_query(IUnknown* source) {
  Interface* found = nullptr;
  const HRESULT hr =
      source ? source->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(&found)) : E_NOINTERFACE;
  if (FAILED(hr)) {
    if (hr != E_NOINTERFACE) throw _com_error(hr);
    return {};
  }
  return own(found);
}

/// As `try_query`, but throws E_POINTER for a missing interface.
template <class Interface>
ComPtr<Interface> query(IUnknown* source) {
  ComPtr<Interface> found = try_query<Interface>(source);
  if (!found) throw _com_error(E_POINTER);
  return found;
}

/// Creates an object of a class, in any context. Throws a failure as a `_com_error`, E_POINTER when the class reports
/// success without an object.
template <class Interface>
ComPtr<Interface> create_instance(const CLSID& class_id) {
  Interface* created = nullptr;
  const HRESULT hr =
      CoCreateInstance(class_id, nullptr, CLSCTX_ALL, __uuidof(Interface), reinterpret_cast<void**>(&created));
  if (FAILED(hr)) throw _com_error(hr);
  if (!created) throw _com_error(E_POINTER);
  return own(created);
}

/// Releases the object; the pointer is null already while the object's `Release` runs.
template <class Interface>
void release(ComPtr<Interface>& target) noexcept {
  if (Interface* held = target.Detach()) held->Release();
}

/// Puts an object with its reference into the target, then releases the old one.
template <class Interface>
void replace(ComPtr<Interface>& target, ComPtr<Interface> object) noexcept {
  const ComPtr<Interface> old = own(target.Detach());
  target.Attach(object.Detach());
}

/// Releases the old object, then runs a call with an out parameter and owns the interface that it returns there. A call
/// that leaves the out parameter untouched gives null.
template <class Interface, class Call>
HRESULT fetch_into(ComPtr<Interface>& target, const Call& call) {
  release(target);
  Interface* fetched = nullptr;
  const HRESULT hr = call(&fetched);
  replace(target, own(fetched));  // a call that lets messages through may have filled the target meanwhile
  return hr;
}

}  // namespace base
