#include "ClassFactory.h"

namespace platform {

STDMETHODIMP ClassFactory::QueryInterface(REFIID iid, void** object) noexcept {
  if (!object) return E_POINTER;
  *object = nullptr;
  if (iid != IID_IUnknown && iid != IID_IClassFactory) return E_NOINTERFACE;
  *object = static_cast<IClassFactory*>(this);
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) ClassFactory::AddRef() noexcept {
  const LONG references = InterlockedIncrement(&references_);
  if (references == 1) ComModule::instance().lock();
  return static_cast<ULONG>(references);
}

STDMETHODIMP_(ULONG) ClassFactory::Release() noexcept {
  const LONG references = InterlockedDecrement(&references_);
  if (references == 0) ComModule::instance().unlock();
  return static_cast<ULONG>(references);
}

STDMETHODIMP ClassFactory::CreateInstance(IUnknown* outer, REFIID iid, void** object) noexcept {
  return creator_(outer, iid, object);
}

STDMETHODIMP ClassFactory::LockServer(BOOL lock) noexcept {
  if (lock) {
    ComModule::instance().lock();
  } else {
    ComModule::instance().unlock();
  }
  return S_OK;
}

}  // namespace platform
