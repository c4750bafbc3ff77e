// What the plug-in's methods return and report when an exception is thrown inside them. No exception leaves them.

#include <windows.h>
#include <commctrl.h>
#include <gmock/gmock.h>

#include "ComObject.h"
#include "ComPtr.h"
#include "ExpectedReports.h"
#include "ImportProbe.h"
#include "RaisedException.h"
#include "RecordingHost.h"
#include "zdExpirationRulePlugin.h"

ZD_IMPORT_PROBE(CoCreateInstance, CreationProbe);
ZD_IMPORT_PROBE(GetActiveWindow, ActiveWindowProbe);
ZD_IMPORT_PROBE(InitCommonControlsEx, CommonControlsProbe);

namespace zd_expiration_rule_plugin {
namespace {

using test_support::RaisedException;
using test_support::take_reports;
using testing::ElementsAre;

constexpr char source[] = "zdExpirationRulePlugin.cpp";

class CaughtException : public testing::Test, public testing::WithParamInterface<RaisedException> {
 protected:
  CaughtException() {
    platform::create_com_object<CzdExpirationRulePlugin>(nullptr, __uuidof(IkvPlugin),
                                                         reinterpret_cast<void**>(&plugin));
  }

  HRESULT initialize() {
    const base::ComPtr<IDispatch> menu = host.main_menu();
    const _bstr_t registry_path = L"Software\\Orvane\\Test host";
    return plugin->Initialize(menu, menu, menu, host.hot_keys(), registry_path, host.storage());
  }

  test_support::RecordingHost host;
  base::ComPtr<IkvPlugin> plugin;
};

TEST_P(CaughtException, InInitializeIsReportedAsAnErrorAndReturnedAsAFailure) {
  CommonControlsProbe controls;
  controls.replace([](const INITCOMMONCONTROLSEX*) {
    GetParam().raise();
    return TRUE;
  });
  EXPECT_EQ(E_FAIL, initialize());
  EXPECT_THAT(take_reports(), ElementsAre(test_support::caught_error(GetParam(), source, 84, "Initialize")));
}

TEST_P(CaughtException, InDoCommandIsReportedAsAnErrorAndReturnedAsAFailure) {
  ASSERT_EQ(S_OK, initialize());
  ActiveWindowProbe windows;
  windows.replace([]() -> HWND {
    GetParam().raise();
    return nullptr;
  });
  EXPECT_EQ(E_FAIL, plugin->DoCommand(test_support::first_command_id, VARIANT()));
  EXPECT_THAT(take_reports(), ElementsAre(test_support::caught_error(GetParam(), source, 107, "DoCommand")));
}

TEST_P(CaughtException, InShowIsTracedAndReturnedByItsKind) {
  CreationProbe creations;
  creations.replace([](const auto&...) {
    GetParam().raise();
    return S_OK;
  });
  EXPECT_EQ(GetParam().hresult, base::query<IzdExpirationRulesPlugin>(plugin)->Show(7));
  EXPECT_THAT(take_reports(), ElementsAre(test_support::traced(GetParam(), source, 121, "Show")));
}

INSTANTIATE_TEST_SUITE_P(All, CaughtException, testing::ValuesIn(test_support::raised_exceptions),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace zd_expiration_rule_plugin
