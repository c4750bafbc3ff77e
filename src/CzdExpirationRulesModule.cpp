#include "CzdExpirationRulesModule.h"

#include "ComModule.h"
#include "ModulePath.h"
#include "Report.h"
#include "resource.h"
#include "zdExpirationRules_h.h"

namespace zd_expiration_rule_plugin {

namespace {

/// Runs a registration step sequence in the system's locale and answers the first failure.
template <class Steps>
HRESULT registration(const SnagtrapUtil::SourceLocation& place, const Steps& steps) noexcept {
  const platform::SystemLocaleScope locale;
  try {
    steps();
    return S_OK;
  } catch (...) {
    return SnagtrapUtil::report_exception_in_flight(place);
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
  return registration(ZD_LOCATION, [this] {
    platform::run_registration_script(IDR_APPID, replacements(), scope);
    platform::run_registration_script(IDR_EXPIRATION_RULE_PLUGIN, replacements(), scope);
    platform::register_type_library(scope);
  });
}

HRESULT CzdExpirationRulesModule::unregister_server() const noexcept {
  return registration(ZD_LOCATION, [this] {
    platform::unregister_type_library(scope);
    platform::run_unregistration_script(IDR_EXPIRATION_RULE_PLUGIN, replacements(), scope);
    platform::run_unregistration_script(IDR_APPID, replacements(), scope);
  });
}

}  // namespace zd_expiration_rule_plugin
