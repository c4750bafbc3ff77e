#pragma once

#include <windows.h>

#include <string>

#include "ComPtr.h"
#include "Owned.h"
#include "zdExpirationRules_h.h"

namespace module_test {

/// Where the built module lies: beside the test program.
std::wstring built_module_path();

/// The built module or a copy of it, loaded into this process and used through its exports only.
class Module {
 public:
  /// Throws `std::runtime_error` when the module cannot be loaded or has not all exports.
  explicit Module(const std::wstring& path = built_module_path());

  HMODULE handle() const { return library_.get(); }

  HRESULT get_class_object(REFCLSID class_id, REFIID iid, void** object) const {
    return get_class_object_(class_id, iid, object);
  }
  HRESULT can_unload() const { return can_unload_(); }
  HRESULT register_server() const { return register_(); }
  HRESULT unregister_server() const { return unregister_(); }

  /// The class object of the plug-in; a failure fails the test and gives null.
  base::ComPtr<IClassFactory> factory() const;
  /// A new plug-in; a failure fails the test and gives null.
  base::ComPtr<IkvPlugin> plugin() const;

 private:
  template <class Function>
  Function export_of(const char* name) const;

  base::LoadedModule library_;
  HRESULT(STDMETHODCALLTYPE* get_class_object_)(REFCLSID, REFIID, void**);
  HRESULT(STDMETHODCALLTYPE* can_unload_)();
  HRESULT(STDMETHODCALLTYPE* register_)();
  HRESULT(STDMETHODCALLTYPE* unregister_)();
};

}  // namespace module_test
