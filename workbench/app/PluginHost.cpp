#include "PluginHost.h"

#include "DispatchObject.h"
#include "ModulePath.h"

namespace workbench {

namespace {

constexpr wchar_t module_name[] = L"zdExpirationRules.dll";

/// Replaces the parts that this host does not have and of which plug-ins only expect a non-null pointer.
class EmptyDispatch final : public DispatchObject<IDispatch> {};

}  // namespace

PluginHost::PluginHost(const std::filesystem::path& file) {
  if (file.empty()) plugin_ = create_registered_plugin();
  if (plugin_) return;
  module_ = std::make_unique<PluginModule>(file.empty() ? std::filesystem::path(base::path_beside_program(module_name))
                                                        : file);
  plugin_ = module_->create_plugin();
}

PluginHost::~PluginHost() {
  if (plugin_) plugin_->Uninitialize();
}

HRESULT PluginHost::initialize(const HostServices& services) noexcept {
  return com_method([&] {
    const base::ComPtr<IDispatch> control_bar(make_object<EmptyDispatch>(), false);
    const base::ComPtr<IDispatch> context_menu(make_object<EmptyDispatch>(), false);
    const _bstr_t registry_path(services.registry_path.c_str());
    return plugin_->Initialize(services.main_menu, control_bar, context_menu, services.hot_keys, registry_path,
                               services.storage);
  });
}

HRESULT PluginHost::show_rule(long number) noexcept {
  return com_method([&] {
    const base::ComPtr<IzdExpirationRulesPlugin> shower = plugin_;
    return shower ? shower->Show(number) : E_NOINTERFACE;
  });
}

}  // namespace workbench
