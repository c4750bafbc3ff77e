#pragma once

#include "FakeObject.h"
#include "HostMenu.h"

namespace test_support {

/// The main menu: submenus that the host has already, and those that a plug-in adds.
class FakeMainMenu final : public FakeObject<IkvMainMenu> {
 public:
  explicit FakeMainMenu(std::shared_ptr<HostState> host) : FakeObject(std::move(host), "kvMainMenu") {}

  HRESULT STDMETHODCALLTYPE FindSubMenu(BSTR caption, IkvSubMenu** submenu) noexcept override;
  HRESULT STDMETHODCALLTYPE AddSubMenu(BSTR caption, BSTR hint, long flags, IkvSubMenu** submenu) noexcept override;
  KV_UNUSED_SLOT(8)
};

class FakeSubMenu final : public FakeObject<IkvSubMenu> {
 public:
  explicit FakeSubMenu(std::shared_ptr<HostState> host) : FakeObject(std::move(host), "kvSubMenu") {}

  HRESULT STDMETHODCALLTYPE AddCommand(BSTR caption, long reserved1, long reserved2, long reserved3,
                                       IUnknown* reserved4, long kind, IDispatch* target,
                                       IkvMenuItem** item) noexcept override;
  KV_UNUSED_SLOT(7)
  KV_UNUSED_SLOT(8)
  KV_UNUSED_SLOT(9)
};

class FakeHotKeys final : public FakeObject<IkvHotKeyCollection> {
 public:
  explicit FakeHotKeys(std::shared_ptr<HostState> host) : FakeObject(std::move(host), "kvHotKeyCollection") {}

  HRESULT STDMETHODCALLTYPE AddHotKey(long flags, long key, IDispatch* target, IDispatch** hot_key) noexcept override;
};

}  // namespace test_support
