#pragma once

#include "HostMenu.h"
#include "ProxyObject.h"

namespace test_support {

class MainMenuProxy final : public workbench::MainMenuSlots<ProxyObject<IkvMainMenu>> {
 public:
  MainMenuProxy(std::shared_ptr<HostState> host, const base::ComPtr<IUnknown>& menu)
      : MainMenuSlots(std::move(host), "kvMainMenu", menu) {}

  HRESULT STDMETHODCALLTYPE FindSubMenu(BSTR caption, IkvSubMenu** submenu) noexcept override;
  HRESULT STDMETHODCALLTYPE AddSubMenu(BSTR caption, BSTR hint, long flags, IkvSubMenu** submenu) noexcept override;
};

class SubMenuProxy final : public workbench::SubMenuSlots<ProxyObject<IkvSubMenu>> {
 public:
  SubMenuProxy(std::shared_ptr<HostState> host, const base::ComPtr<IUnknown>& submenu)
      : SubMenuSlots(std::move(host), "kvSubMenu", submenu) {}

  /// The host below gets a stand-in for the target: each test decides when a plug-in's last reference is released.
  HRESULT STDMETHODCALLTYPE AddCommand(BSTR caption, long reserved1, long reserved2, long reserved3,
                                       IUnknown* reserved4, long kind, IDispatch* target,
                                       IkvMenuItem** item) noexcept override;
};

class HotKeysProxy final : public ProxyObject<IkvHotKeyCollection> {
 public:
  HotKeysProxy(std::shared_ptr<HostState> host, const base::ComPtr<IUnknown>& hot_keys)
      : ProxyObject(std::move(host), "kvHotKeyCollection", hot_keys) {}

  /// The target as in `AddCommand`.
  HRESULT STDMETHODCALLTYPE AddHotKey(long flags, long key, IDispatch* target, IDispatch** hot_key) noexcept override;
};

}  // namespace test_support
