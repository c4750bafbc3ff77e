#pragma once

#include <windows.h>

#include <filesystem>
#include <memory>
#include <type_traits>

#include "ComPtr.h"
#include "Owned.h"
#include "zdExpirationRules_h.h"

namespace workbench {

/// The plug-in's DLL. The destructor frees it if DllCanUnloadNow returns S_OK.
class PluginModule {
 public:
  /// Loads the library from this file. Throws `_com_error`.
  explicit PluginModule(const std::filesystem::path& file);
  PluginModule(const PluginModule&) = delete;
  PluginModule& operator=(const PluginModule&) = delete;
  ~PluginModule();

  /// A new plug-in from the library's class object, registered or not. Throws `_com_error`.
  base::ComPtr<IkvPlugin> create_plugin() const;

 private:
  base::LoadedModule library_;
};

/// A new plug-in of the registered class; null when none is registered. Throws `_com_error` for any other failure.
base::ComPtr<IkvPlugin> create_registered_plugin();

}  // namespace workbench
