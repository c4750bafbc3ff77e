#pragma once

#include <objbase.h>
#include <windows.h>
#include <comdef.h>

namespace platform {

template <class Interface>
inline const IID& interface_id() noexcept {
  return __uuidof(Interface);
}

/// The system's reference-counted pointer for one interface.
template <class Interface>
using ComPtr = _com_ptr_t<_com_IIID_getter<Interface, &interface_id<Interface>>>;

/// Asks `source` for an interface. Null when `source` is null, or when it lacks the interface; any other failure is
/// thrown as a `_com_error`.
template <class Interface>
ComPtr<Interface> try_query(IUnknown* source) {
  Interface* found = nullptr;
  const HRESULT hr =
      source ? source->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(&found)) : E_NOINTERFACE;
  if (FAILED(hr)) {
    if (hr != E_NOINTERFACE) throw _com_error(hr);
    return {};
  }
  return ComPtr<Interface>(found, false);
}

/// As `try_query`, but a missing interface is thrown as E_POINTER.
template <class Interface>
ComPtr<Interface> query(IUnknown* source) {
  ComPtr<Interface> found = try_query<Interface>(source);
  if (!found) throw _com_error(E_POINTER);
  return found;
}

/// Creates an object of a class, in any context. Throws a `_com_error` with the failure, E_POINTER when the class
/// answered success without an object.
template <class Interface>
ComPtr<Interface> create_instance(const CLSID& class_id) {
  Interface* made = nullptr;
  const HRESULT hr =
      CoCreateInstance(class_id, nullptr, CLSCTX_ALL, __uuidof(Interface), reinterpret_cast<void**>(&made));
  if (FAILED(hr)) throw _com_error(hr);
  if (!made) throw _com_error(E_POINTER);
  return ComPtr<Interface>(made, false);
}

/// Lets go of an object. The pointer is null already while the object is released.
template <class Interface>
void release(ComPtr<Interface>& target) noexcept {
  if (Interface* held = target.Detach()) held->Release();
}

/// Runs a call that hands out an interface and keeps what it gave. The old object is released first; a call that leaves
/// its out parameter untouched gives null.
template <class Interface, class Call>
HRESULT fetch_into(ComPtr<Interface>& target, const Call& call) {
  release(target);
  Interface* given = nullptr;
  const HRESULT hr = call(&given);
  target.Attach(given);
  return hr;
}

/// Takes over a string that a call handed out, also when no memory is left to hold it.
inline _bstr_t take_string(BSTR text) {
  _bstr_t holder;
  try {
    holder.Attach(text);
  } catch (...) {
    SysFreeString(text);
    throw;
  }
  return holder;
}

/// Whether two texts hold the same code units; a null text equals an empty one.
inline bool same_text(const _bstr_t& left, const _bstr_t& right) noexcept {
  if (left.length() != right.length()) return false;
  return left.length() == 0 || left == right;
}

}  // namespace platform
