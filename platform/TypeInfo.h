#pragma once

#include <oaidl.h>
#include <windows.h>
#include <ocidl.h>
#include <oleauto.h>

#include "ComPtr.h"
#include "ScopedLock.h"

namespace platform {

/// Clears the thread's error information at its begin and its end. A method that sets none of its own holds one,
/// because after a failing method the automation library reports whatever error information it finds, even that of a
/// host object that the method called.
class ScopedNoErrorInfo {
 public:
  ScopedNoErrorInfo() noexcept { SetErrorInfo(0, nullptr); }
  ~ScopedNoErrorInfo() { SetErrorInfo(0, nullptr); }
  ScopedNoErrorInfo(const ScopedNoErrorInfo&) = delete;
  ScopedNoErrorInfo& operator=(const ScopedNoErrorInfo&) = delete;
};

/// The description of one interface or class from the module's type library: from the registered library or, when none
/// is registered or the registered one does not have the type, from the module's own resources. Loaded when it is
/// created; a failure to load is returned by every call.
class TypeInfo {
 public:
  TypeInfo(const GUID& library, const GUID& type) noexcept;

  HRESULT get_count(UINT* count) const noexcept;
  HRESULT get(UINT index, ITypeInfo** info) const noexcept;
  HRESULT get_ids_of_names(LPOLESTR* names, UINT count, DISPID* ids) const noexcept;
  HRESULT invoke(void* object, DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                 UINT* bad_argument) const noexcept;

 private:
  base::ComPtr<ITypeInfo> info_;
  HRESULT loaded_;
};

/// The one description of a type, loaded on first use and kept until the module unloads.
template <class Type, const GUID& library>
const TypeInfo& type_info() noexcept {
  static SRWLOCK loading = SRWLOCK_INIT;
  const base::ScopedExclusiveLock lock(loading);
  // Objects of several apartments share it; the lock lets one thread at a time come here.
  static const TypeInfo info(library, __uuidof(Type));  // NOLINT(bugprone-dynamic-static-initializers)
  return info;
}

/// The base of a dual interface: late-bound calls are served from the type library.
template <class Interface, const GUID& library>
class DualInterface : public Interface {
 public:
  STDMETHODIMP GetTypeInfoCount(UINT* count) noexcept override {
    return type_info<Interface, library>().get_count(count);
  }
  STDMETHODIMP GetTypeInfo(UINT index, LCID, ITypeInfo** info) noexcept override {
    return type_info<Interface, library>().get(index, info);
  }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT count, LCID, DISPID* ids) noexcept override {
    return type_info<Interface, library>().get_ids_of_names(names, count, ids);
  }
  STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* exception, UINT* bad_argument) noexcept override {
    return type_info<Interface, library>().invoke(static_cast<Interface*>(this), id, flags, parameters, result,
                                                  exception, bad_argument);
  }

 protected:
  ~DualInterface() = default;
};

/// Returns the coclass's type information.
template <class Coclass, const GUID& library>
class ProvideClassInfo : public IProvideClassInfo {
 public:
  STDMETHODIMP GetClassInfo(ITypeInfo** info) noexcept override { return type_info<Coclass, library>().get(0, info); }

 protected:
  ~ProvideClassInfo() = default;
};

}  // namespace platform
