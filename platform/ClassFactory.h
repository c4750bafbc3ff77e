#pragma once

#include <windows.h>
#include <unknwn.h>

#include "ComModule.h"
#include "ComObject.h"

namespace platform {

/// The class object of one class. There is one for the module, created with it; a reference to it and a server lock
/// each keep the module loaded.
class ClassFactory final : public IClassFactory {
 public:
  using Creator = HRESULT (*)(IUnknown* outer, REFIID iid, void** object) noexcept;

  explicit constexpr ClassFactory(Creator creator) noexcept : creator_(creator) {}
  ClassFactory(const ClassFactory&) = delete;
  ClassFactory& operator=(const ClassFactory&) = delete;

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override;
  STDMETHODIMP_(ULONG) AddRef() noexcept override;
  STDMETHODIMP_(ULONG) Release() noexcept override;
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept override;
  STDMETHODIMP LockServer(BOOL lock) noexcept override;

 private:
  Creator creator_;
  volatile LONG references_ = 0;
};

/// One row of the module's table of classes.
struct ClassEntry {
  const CLSID* class_id;
  ClassFactory* factory;
};

/// Implements `DllGetClassObject` for a table of classes.
template <std::size_t count>
HRESULT get_class_object(const ClassEntry (&classes)[count], REFCLSID class_id, REFIID iid, void** object) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  for (const ClassEntry& entry : classes) {
    if (*entry.class_id == class_id) return entry.factory->QueryInterface(iid, object);
  }
  return CLASS_E_CLASSNOTAVAILABLE;
}

}  // namespace platform
