#include "Module.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "ChildProcess.h"
#include "ModulePath.h"

namespace module_test {

std::wstring built_module_path() { return base::path_beside_program(L"zdExpirationRules.dll"); }

Module::Module(const std::wstring& path) : library_(LoadLibraryW(path.c_str())) {
  if (!library_) throw std::runtime_error("the module cannot be loaded");
  get_class_object_ = export_of<decltype(get_class_object_)>("DllGetClassObject");
  can_unload_ = export_of<decltype(can_unload_)>("DllCanUnloadNow");
  register_ = export_of<decltype(register_)>("DllRegisterServer");
  unregister_ = export_of<decltype(unregister_)>("DllUnregisterServer");
}

template <class Function>
Function Module::export_of(const char* name) const {
  const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(handle(), name)));
  if (!function) throw std::runtime_error(std::string("the module does not export ") + name);
  return function;
}

base::ComPtr<IClassFactory> Module::factory() const {
  IClassFactory* factory = nullptr;
  EXPECT_EQ(S_OK,
            get_class_object(__uuidof(CzdExpirationRulePlugin), IID_IClassFactory, reinterpret_cast<void**>(&factory)));
  return base::ComPtr<IClassFactory>(factory, false);
}

base::ComPtr<IkvPlugin> Module::plugin() const {
  IkvPlugin* plugin = nullptr;
  EXPECT_EQ(S_OK, factory()->CreateInstance(nullptr, __uuidof(IkvPlugin), reinterpret_cast<void**>(&plugin)));
  return base::ComPtr<IkvPlugin>(plugin, false);
}

}  // namespace module_test
