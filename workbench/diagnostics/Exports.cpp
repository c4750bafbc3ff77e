#include <new>

#include "DebugRoot.h"
#include "Registration.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD, void*) { return TRUE; }

extern "C" HRESULT STDMETHODCALLTYPE ST_InitObject(IKV_SnagtrapUtil::IDebugRoot** root) {
  if (!root) return E_POINTER;
  *root = new (std::nothrow) snagtrap::DebugRoot;
  return *root ? S_OK : E_OUTOFMEMORY;
}

extern "C" HRESULT STDMETHODCALLTYPE DllRegisterServer() {
  return workbench::com_method([] { return snagtrap::register_library(); });
}

extern "C" HRESULT STDMETHODCALLTYPE DllUnregisterServer() {
  return workbench::com_method([] { return snagtrap::unregister_library(); });
}
