#include "PluginModule.h"

#include "Hresult.h"

namespace workbench {

namespace {

using GetClassObjectFunction = HRESULT(STDMETHODCALLTYPE*)(REFCLSID, REFIID, void**);
using CanUnloadNowFunction = HRESULT(STDMETHODCALLTYPE*)();

template <class Function>
Function find_export(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace

// What the library itself is linked to lies beside it, beside this program or in the system's folder.
PluginModule::PluginModule(const std::filesystem::path& file)
    : library_(LoadLibraryExW(std::filesystem::absolute(file).c_str(), nullptr,
                              LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS)) {
  if (!library_) base::throw_last_failure();
}

PluginModule::~PluginModule() {
  const auto can_unload = find_export<CanUnloadNowFunction>(library_.get(), "DllCanUnloadNow");
  if (!can_unload || can_unload() != S_OK) library_.detach();
}

base::ComPtr<IkvPlugin> PluginModule::create_plugin() const {
  const auto get_class_object = find_export<GetClassObjectFunction>(library_.get(), "DllGetClassObject");
  if (!get_class_object) base::throw_last_failure();
  base::ComPtr<IClassFactory> factory;
  base::throw_if_failed(get_class_object(__uuidof(CzdExpirationRulePlugin), IID_PPV_ARGS(&factory)));
  base::ComPtr<IkvPlugin> plugin;
  base::throw_if_failed(factory->CreateInstance(nullptr, IID_PPV_ARGS(&plugin)));
  return plugin;
}

base::ComPtr<IkvPlugin> create_registered_plugin() {
  base::ComPtr<IkvPlugin> plugin;
  const HRESULT created =
      CoCreateInstance(__uuidof(CzdExpirationRulePlugin), nullptr, CLSCTX_INPROC_SERVER, IID_PPV_ARGS(&plugin));
  if (created != REGDB_E_CLASSNOTREG) base::throw_if_failed(created);
  return plugin;
}

}  // namespace workbench
