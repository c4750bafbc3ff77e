#include "MenuProxies.h"

#include "DispatchObject.h"

namespace test_support {
namespace {

using base::ComPtr;

class StandInTarget final : public workbench::DispatchObject<IDispatch> {};

ComPtr<IDispatch> stand_in_for(IDispatch* target) { return {target ? new StandInTarget : nullptr, false}; }

/// A menu item or a hot key: all that either offers is the id of its command.
template <class Interface>
class CommandProxy final : public ProxyObject<Interface> {
 public:
  CommandProxy(std::shared_ptr<HostState> host, const char* name, const char* getter, const ComPtr<IUnknown>& command)
      : ProxyObject<Interface>(std::move(host), name, command), getter_(getter) {}

  HRESULT STDMETHODCALLTYPE get_CommandID(long* id) noexcept override {
    return this->fetch(getter_, &Interface::get_CommandID, id);
  }

 private:
  const char* getter_;
};

/// Records the object that the host would call for a new command.
template <class Interface>
void note_command(HostState& host, const ComPtr<Interface>& command, IDispatch* target) {
  long id = 0;
  if (SUCCEEDED(command->get_CommandID(&id))) host.commands[id] = target;
}

}  // namespace

HRESULT MainMenuProxy::FindSubMenu(BSTR caption, IkvSubMenu** submenu) noexcept {
  const auto wrap = [&](const ComPtr<IkvSubMenu>& found) { return new SubMenuProxy(host(), found); };
  return fetch_object("IkvMainMenu::FindSubMenu", &IkvMainMenu::FindSubMenu, wrap, submenu, caption);
}

HRESULT MainMenuProxy::AddSubMenu(BSTR caption, BSTR hint, long flags, IkvSubMenu** submenu) noexcept {
  const auto wrap = [&](const ComPtr<IkvSubMenu>& added) { return new SubMenuProxy(host(), added); };
  return fetch_object("IkvMainMenu::AddSubMenu", &IkvMainMenu::AddSubMenu, wrap, submenu, caption, hint, flags);
}

HRESULT SubMenuProxy::AddCommand(BSTR caption, long reserved1, long reserved2, long reserved3, IUnknown* reserved4,
                                 long kind, IDispatch* target, IkvMenuItem** item) noexcept {
  return calls().call(
      "IkvSubMenu::AddCommand",
      {caption, reserved1, reserved2, reserved3, reserved4, kind, static_cast<IUnknown*>(target)}, item, [&] {
        ComPtr<IkvMenuItem> added;
        const HRESULT result = inner<IkvSubMenu>()->AddCommand(caption, reserved1, reserved2, reserved3, reserved4,
                                                               kind, stand_in_for(target), &added);
        *item = nullptr;
        if (!added) return result;
        note_command(*host(), added, target);
        *item = new CommandProxy<IkvMenuItem>(host(), "kvMenuItem", "IkvMenuItem::get_CommandID", added);
        return result;
      });
}

HRESULT HotKeysProxy::AddHotKey(long flags, long key, IDispatch* target, IDispatch** hot_key) noexcept {
  return calls().call("IkvHotKeyCollection::AddHotKey", {flags, key, static_cast<IUnknown*>(target)}, hot_key, [&] {
    ComPtr<IDispatch> added;
    const HRESULT result = inner<IkvHotKeyCollection>()->AddHotKey(flags, key, stand_in_for(target), &added);
    *hot_key = nullptr;
    if (!added) return result;
    note_command(*host(), ComPtr<IkvHotKey>(added), target);
    *hot_key = new CommandProxy<IkvHotKey>(host(), "kvHotKey", "IkvHotKey::get_CommandID", added);
    return result;
  });
}

}  // namespace test_support
