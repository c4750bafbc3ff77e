#pragma once

#include "HostMenu.h"
#include "StorageBlock.h"
#include "TypeInfo.h"
#include "zdExpirationRules_h.h"

namespace zd_expiration_rule_plugin {

/// The module's one COM object, which receives every call of the host. It keeps what `Initialize` gave it until its
/// last release. All calls arrive on the host's UI thread; calls that arrive while one of its dialogs is open are
/// served too.
class CzdExpirationRulePlugin : public platform::DualInterface<IkvPlugin, LIBID_zdExpirationRules>,
                                public platform::DualInterface<IzdExpirationRulesPlugin, LIBID_zdExpirationRules>,
                                public platform::ProvideClassInfo<::CzdExpirationRulePlugin, LIBID_zdExpirationRules> {
 public:
  CzdExpirationRulePlugin() = default;
  CzdExpirationRulePlugin(const CzdExpirationRulePlugin&) = delete;
  CzdExpirationRulePlugin& operator=(const CzdExpirationRulePlugin&) = delete;

  HRESULT FinalConstruct() noexcept { return S_OK; }
  /// Releases the host's objects in the reverse order of their acquisition.
  void FinalRelease() noexcept;
  IUnknown* find_interface(REFIID iid) noexcept;

  /// Takes over the host's storage and adds the menu command and the hot key. E_INVALIDARG for a missing argument
  /// (`zdStorage` may be null: the host's storage object is then created), E_FAIL when the host fails on the way; what
  /// was obtained before stays kept.
  STDMETHODIMP Initialize(IDispatch* pMainMenu, IDispatch* MainControlBar, IDispatch* PortfolioContextMenu,
                          IDispatch* PortfolioHotKeys, BSTR RegistryPath, IDispatch* zdStorage) noexcept override;
  STDMETHODIMP OnSelectionChanged(IDispatch* SelectionTable) noexcept override;
  /// Opens the rule list for the id of the menu command or the hot key and returns when it is closed; E_INVALIDARG for
  /// any other id, E_FAIL before `Initialize`.
  STDMETHODIMP DoCommand(long Id, VARIANT Parameter) noexcept override;
  STDMETHODIMP Uninitialize() noexcept override;
  /// Opens the editor for one rule and returns when it is closed.
  STDMETHODIMP Show(long RuleID) noexcept override;

 protected:
  virtual ~CzdExpirationRulePlugin() = default;

 private:
  void fill_storage_block(IDispatch* zdStorage);
  void add_zd_menu_items(IDispatch* pMainMenu);
  void create_zd_hot_key(IDispatch* PortfolioHotKeys);

  StorageBlock storage_;
  base::ComPtr<IkvSubMenu> rules_menu_;
  base::ComPtr<IkvMenuItem> menu_item_;
  base::ComPtr<IkvHotKey> hot_key_;
};

}  // namespace zd_expiration_rule_plugin
