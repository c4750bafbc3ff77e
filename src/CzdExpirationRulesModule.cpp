#include "CzdExpirationRulesModule.h"

#include <comdef.h>

#include <new>

#include "ComModule.h"
#include "ModulePath.h"
#include "resource.h"
#include "zdExpirationRules_h.h"

namespace zd_expiration_rule_plugin {

namespace {

/// Runs the steps of a registration in the system's locale and returns the first failure. Reports nothing: an installer
/// may run without a user, and the HRESULT says what failed.
template <class Steps>
HRESULT registration(const Steps& steps) noexcept {
  const platform::ScopedSystemLocale locale;
  try {
    steps();
    return S_OK;
  } catch (const _com_error& error) {
    return error.Error();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace

bool CzdExpirationRulesModule::initialised() const noexcept { return platform::ComModule::instance().initialised(); }

bool CzdExpirationRulesModule::can_unload() const noexcept { return platform::ComModule::instance().lock_count() == 0; }

platform::Replacements CzdExpirationRulesModule::replacements() const {
  return {
      {L"APPID", platform::guid_text(__uuidof(zdExpirationRulesAppID))},
      {L"CLSID", platform::guid_text(__uuidof(::CzdExpirationRulePlugin))},
      {L"FriendlyName", L"CzdExpirationRulePlugin Object"},
      {L"MODULE", base::module_file_name()},
      {L"MODULETYPE", L"InprocServer32"},
      {L"MODULEGUID", platform::guid_text(LIBID_zdExpirationRules)},
  };
}

HRESULT CzdExpirationRulesModule::register_server() const noexcept {
  return registration([this] {
    platform::run_registration_script(IDR_APPID, replacements(), scope);
    platform::run_registration_script(IDR_EXPIRATION_RULE_PLUGIN, replacements(), scope);
    platform::register_type_library(scope);
  });
}

HRESULT CzdExpirationRulesModule::unregister_server() const noexcept {
  return registration([this] {
    platform::unregister_type_library(scope);
    platform::run_unregistration_script(IDR_EXPIRATION_RULE_PLUGIN, replacements(), scope);
    platform::run_unregistration_script(IDR_APPID, replacements(), scope);
  });
}

}  // namespace zd_expiration_rule_plugin
