#include "PluginHost.h"

#include "DispatchObject.h"

namespace workbench {

namespace {

constexpr wchar_t module_name[] = L"zdExpirationRules.dll";

/// Stands for the parts of a host that this one does not have and that plug-ins only ask to be there.
class EmptyDispatch final : public DispatchObject<IDispatch> {};

std::filesystem::path folder_of_this_program() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length < path.size()) return std::filesystem::path(path.substr(0, length)).parent_path();
    path.resize(2 * path.size());
  }
}

}  // namespace

PluginHost::PluginHost(const std::filesystem::path& file) {
  if (file.empty()) plugin_ = create_registered_plugin();
  if (plugin_) return;
  module_ = std::make_unique<PluginModule>(file.empty() ? folder_of_this_program() / module_name : file);
  plugin_ = module_->create_plugin();
}

PluginHost::~PluginHost() {
  if (plugin_) plugin_->Uninitialize();
}

HRESULT PluginHost::initialize(const HostServices& services) noexcept {
  return com_method([&] {
    const ComPtr<IDispatch> control_bar(make_object<EmptyDispatch>(), false);
    const ComPtr<IDispatch> context_menu(make_object<EmptyDispatch>(), false);
    const _bstr_t registry_path(services.registry_path.c_str());
    return plugin_->Initialize(services.main_menu, control_bar, context_menu, services.hot_keys, registry_path,
                               services.storage);
  });
}

HRESULT PluginHost::show_rule(long number) noexcept {
  return com_method([&] {
    const ComPtr<IzdExpirationRulesPlugin> shower = plugin_;
    return shower ? shower->Show(number) : E_NOINTERFACE;
  });
}

}  // namespace workbench
