#include "FakeMenu.h"

#include <oleauto.h>

namespace test_support {
namespace {

/// A menu item or a hot key: all that either offers is the id of its command.
template <class Interface>
class FakeCommand final : public FakeObject<Interface> {
 public:
  FakeCommand(std::shared_ptr<HostState> host, const char* name, const char* getter, long id)
      : FakeObject<Interface>(std::move(host), name), getter_(getter), id_(id) {}

  HRESULT STDMETHODCALLTYPE get_CommandID(long* id) noexcept override {
    return this->calls().call(getter_, {}, id, [&] {
      *id = id_;
      return S_OK;
    });
  }

 private:
  const char* getter_;
  long id_;
};

std::wstring text_of(BSTR text) { return {text ? text : L"", SysStringLen(text)}; }

}  // namespace

HRESULT FakeMainMenu::FindSubMenu(BSTR caption, IkvSubMenu** submenu) noexcept {
  return calls().call("IkvMainMenu::FindSubMenu", {caption}, submenu, [&] {
    *submenu = host()->submenus.count(text_of(caption)) != 0 ? new FakeSubMenu(host()) : nullptr;
    return S_OK;
  });
}

HRESULT FakeMainMenu::AddSubMenu(BSTR caption, BSTR hint, long flags, IkvSubMenu** submenu) noexcept {
  return calls().call("IkvMainMenu::AddSubMenu", {caption, hint, flags}, submenu, [&] {
    host()->submenus.insert(text_of(caption));
    *submenu = new FakeSubMenu(host());
    return S_OK;
  });
}

HRESULT FakeSubMenu::AddCommand(BSTR caption, long reserved1, long reserved2, long reserved3, IUnknown* reserved4,
                                long kind, IDispatch* target, IkvMenuItem** item) noexcept {
  return calls().call("IkvSubMenu::AddCommand",
                      {caption, reserved1, reserved2, reserved3, reserved4, kind, static_cast<IUnknown*>(target)}, item,
                      [&] {
                        const long id = host()->new_command(target);
                        *item = new FakeCommand<IkvMenuItem>(host(), "kvMenuItem", "IkvMenuItem::get_CommandID", id);
                        return S_OK;
                      });
}

HRESULT FakeHotKeys::AddHotKey(long flags, long key, IDispatch* target, IDispatch** hot_key) noexcept {
  return calls().call("IkvHotKeyCollection::AddHotKey", {flags, key, static_cast<IUnknown*>(target)}, hot_key, [&] {
    const long id = host()->new_command(target);
    *hot_key = new FakeCommand<IkvHotKey>(host(), "kvHotKey", "IkvHotKey::get_CommandID", id);
    return S_OK;
  });
}

}  // namespace test_support
