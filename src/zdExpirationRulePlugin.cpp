#include "zdExpirationRulePlugin.h"

#include <windows.h>
#include <commctrl.h>

#include <new>

#include "EditExpirationRuleDialog.h"
#include "ExpirationRulesListDialog.h"
#include "Report.h"
#include "ResourceMgr.h"

namespace zd_expiration_rule_plugin {

namespace {

using base::fetch_into;
using base::query;
using base::release;
using SnagtrapUtil::expect;
using SnagtrapUtil::require_success;

// Texts of the host's shared resource module.
constexpr unsigned int submenu_caption_id = 4028;
constexpr unsigned int submenu_hint_id = 4033;
constexpr unsigned int command_caption_id = 4052;

// The values that the host's menu and hot-key collection expect for a plug-in's entries.
constexpr long submenu_flags = 1;
constexpr long command_kind = 3;
constexpr long hot_key_flags = 9;  // a virtual key with Ctrl
constexpr long hot_key_code = 0x55;

_bstr_t shared_text(unsigned int id) { return zd_common_res::GetString(id).c_str(); }

// The host may call `Initialize` again inside any of its calls, or drop its last reference to this object: what is
// called is kept alive until it returns.

/// Fills an entry of the storage block from `source` unless it holds that object already. Null when `source` is null or
/// does not give the interface.
template <class Interface>
void fill_entry(base::ComPtr<Interface>& entry, IUnknown* source) {
  const base::ComPtr<IUnknown> alive(source);
  IUnknown* const current = entry;
  if (current == source) return;
  fetch_into(entry, [&](Interface** out) {
    return source ? source->QueryInterface(__uuidof(Interface), reinterpret_cast<void**>(out)) : E_POINTER;
  });
}

/// This object, whose storage block a dialog works on.
using KeptAlive = base::ComPtr<IkvPlugin>;

template <class Item>
long command_id(base::ComPtr<Item> item) {
  long id = 0;
  item->get_CommandID(&id);
  return id;
}

}  // namespace

void CzdExpirationRulePlugin::FinalRelease() noexcept {
  release(hot_key_);
  release(menu_item_);
  release(rules_menu_);
  release(storage_.rules);
  release(storage_.symbol_sources);
  release(storage_.session);
  release(storage_.storage);
}

IUnknown* CzdExpirationRulePlugin::find_interface(REFIID iid) noexcept {
  if (iid == __uuidof(IkvPlugin) || iid == IID_IDispatch) return static_cast<IkvPlugin*>(this);
  if (iid == __uuidof(IzdExpirationRulesPlugin)) return static_cast<IzdExpirationRulesPlugin*>(this);
  if (iid == IID_IProvideClassInfo) return static_cast<IProvideClassInfo*>(this);
  return nullptr;
}

STDMETHODIMP CzdExpirationRulePlugin::Initialize(IDispatch* pMainMenu, IDispatch* MainControlBar,
                                                 IDispatch* PortfolioContextMenu, IDispatch* PortfolioHotKeys,
                                                 BSTR RegistryPath, IDispatch* zdStorage) noexcept {
  const platform::ScopedNoErrorInfo no_error_info;
  if (!expect(pMainMenu, ZD_LOCATION_AT(70)) || !expect(MainControlBar, ZD_LOCATION_AT(71)) ||
      !expect(PortfolioContextMenu, ZD_LOCATION_AT(72)) || !expect(PortfolioHotKeys, ZD_LOCATION_AT(73)) ||
      SysStringLen(RegistryPath) == 0) {
    return E_INVALIDARG;
  }
  try {
    const INITCOMMONCONTROLSEX controls = {sizeof controls,
                                           ICC_LISTVIEW_CLASSES | ICC_DATE_CLASSES | ICC_USEREX_CLASSES};
    InitCommonControlsEx(&controls);
    fill_storage_block(zdStorage);
    add_zd_menu_items(pMainMenu);
    create_zd_hot_key(PortfolioHotKeys);
    return S_OK;
  } catch (...) {
    SnagtrapUtil::catch_and_call(ZD_LOCATION_AT(84));
    return E_FAIL;
  }
}

void CzdExpirationRulePlugin::fill_storage_block(IDispatch* zdStorage) {
  if (zdStorage) {
    fill_entry(storage_.storage, zdStorage);
  } else {
    fetch_into(storage_.storage, [](IkvStorage** out) {
      return CoCreateInstance(__uuidof(kvStorage), nullptr, CLSCTX_ALL, __uuidof(IkvStorage),
                              reinterpret_cast<void**>(out));
    });
  }
  fill_entry(storage_.session, storage_.storage);
  fill_entry(storage_.symbol_sources, storage_.storage);
  fill_entry(storage_.rules, storage_.storage);
}

void CzdExpirationRulePlugin::add_zd_menu_items(IDispatch* pMainMenu) {
  const auto main_menu = query<IkvMainMenu>(pMainMenu);
  const _bstr_t sought = shared_text(submenu_caption_id);
  require_success(fetch_into(rules_menu_, [&](IkvSubMenu** out) { return main_menu->FindSubMenu(sought, out); }),
                  ZD_LOCATION_AT(136));
  if (!rules_menu_) {
    const _bstr_t hint = shared_text(submenu_hint_id);
    const _bstr_t caption = shared_text(submenu_caption_id);
    require_success(
        fetch_into(rules_menu_,
                   [&](IkvSubMenu** out) { return main_menu->AddSubMenu(caption, hint, submenu_flags, out); }),
        ZD_LOCATION_AT(144));
  }
  const base::ComPtr<IkvSubMenu> submenu(&*rules_menu_);
  auto self = query<IkvPlugin>(static_cast<IkvPlugin*>(this));
  const _bstr_t command = shared_text(command_caption_id);
  const HRESULT added = fetch_into(menu_item_, [&](IkvMenuItem** out) {
    return submenu->AddCommand(command, 0, 0, 0, nullptr, command_kind, self, out);
  });
  release(self);  // before a report, in which the host may count the references
  require_success(added, ZD_LOCATION_AT(150));
}

void CzdExpirationRulePlugin::create_zd_hot_key(IDispatch* PortfolioHotKeys) {
  const auto collection = query<IkvHotKeyCollection>(PortfolioHotKeys);
  auto self = query<IkvPlugin>(static_cast<IkvPlugin*>(this));
  base::ComPtr<IDispatch> created;
  const HRESULT added = fetch_into(
      created, [&](IDispatch** out) { return collection->AddHotKey(hot_key_flags, hot_key_code, self, out); });
  release(self);
  require_success(added, ZD_LOCATION_AT(160));
  release(hot_key_);
  base::replace(hot_key_, base::try_query<IkvHotKey>(created));
}

STDMETHODIMP CzdExpirationRulePlugin::OnSelectionChanged(IDispatch*) noexcept { return S_OK; }

STDMETHODIMP CzdExpirationRulePlugin::DoCommand(long Id, VARIANT) noexcept {
  const platform::ScopedNoErrorInfo no_error_info;
  try {
    const KeptAlive alive(static_cast<IkvPlugin*>(this));
    const long menu_id = command_id(menu_item_);
    const long hot_key_id = command_id(hot_key_);
    if (Id != menu_id && Id != hot_key_id) return E_INVALIDARG;
    CExpirationRulesListDialog dialog(&storage_);
    dialog.DoModal(GetActiveWindow());
    return S_OK;
  } catch (...) {
    SnagtrapUtil::catch_and_call(ZD_LOCATION_AT(107));
    return E_FAIL;
  }
}

STDMETHODIMP CzdExpirationRulePlugin::Uninitialize() noexcept { return S_OK; }

STDMETHODIMP CzdExpirationRulePlugin::Show(long RuleID) noexcept {
  const platform::ScopedNoErrorInfo no_error_info;
  try {
    const KeptAlive alive(static_cast<IkvPlugin*>(this));
    CEditExpirationRuleDialog dialog(&storage_, RuleID);
    dialog.DoModal(GetActiveWindow());
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return SnagtrapUtil::report_exception_in_flight(ZD_LOCATION_AT(121));
  }
}

}  // namespace zd_expiration_rule_plugin
