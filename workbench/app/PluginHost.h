#pragma once

#include <comdef.h>

#include <filesystem>
#include <memory>
#include <string>

#include "PluginModule.h"

namespace workbench {

/// What a plug-in gets from its host when it is initialised.
struct HostServices {
  base::ComPtr<IDispatch> main_menu;
  base::ComPtr<IDispatch> hot_keys;
  base::ComPtr<IDispatch> storage;
  std::wstring registry_path;  ///< under the current user
};

/// The plug-in from its creation to its last release.
class PluginHost {
 public:
  /// Creates the plug-in: from this file, or, where it is empty, the registered one, or else the one in the file of
  /// its name beside this program. Throws `_com_error`.
  explicit PluginHost(const std::filesystem::path& file);
  PluginHost(const PluginHost&) = delete;
  PluginHost& operator=(const PluginHost&) = delete;
  ~PluginHost();

  /// Hands the plug-in its services. If this fails, the plug-in keeps what it had set up before.
  HRESULT initialize(const HostServices& services) noexcept;

  /// Lets the plug-in open its editor for this rule; returns when the editor is closed.
  HRESULT show_rule(long number) noexcept;

 private:
  std::unique_ptr<PluginModule> module_;
  base::ComPtr<IkvPlugin> plugin_;
};

}  // namespace workbench
