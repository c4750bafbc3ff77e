#include "DialogDriver.h"
#include "ModuleTest.h"
#include "OwnedWindow.h"
#include "resource.h"

namespace module_test {
namespace {

using test_support::DialogDriver;
using test_support::Fault;

std::string traced(const char* hresult) {
  return std::string("TRACE HRESULT - ") + hresult +
         "; FILE - zdExpirationRulePlugin.cpp, LINE - 121 | zdExpirationRulePlugin.cpp:121 Show";
}

class ShowTest : public HostedTest {
 protected:
  ShowTest() { host_.rules() = {{7, L"IF quarter"}}; }

  void TearDown() override {
    own_ = nullptr;
    HostedTest::TearDown();
  }

  base::ComPtr<IzdExpirationRulesPlugin> own_ = base::try_query<IzdExpirationRulesPlugin>(plugin_);
};

TEST_F(ShowTest, OpensTheEditorOfTheRule) {
  initialize();
  std::wstring name;
  DialogDriver driver([&](HWND dialog) {
    name = test_support::item_text(dialog, IDC_NAME);
    test_support::click(dialog, IDCANCEL);
  });
  EXPECT_EQ(S_OK, own_->Show(7));
  EXPECT_EQ(1, driver.dialogs());
  EXPECT_EQ(L"IF quarter", name);
}

TEST_F(ShowTest, ReturnsSuccessWhateverTheUserDid) {
  initialize();
  for (const int button : {IDCANCEL, IDOK}) {
    DialogDriver driver([&](HWND dialog) { test_support::click(dialog, button); });
    EXPECT_EQ(S_OK, own_->Show(7));
    EXPECT_EQ(1, driver.dialogs());
  }
  EXPECT_EQ(1u, calls().all("IkvExpirationRuleService::update_rule").size()) << "OK alone saves";
}

TEST_F(ShowTest, RuleZeroIsANewRule) {
  initialize();
  DialogDriver driver([](HWND dialog) {
    SetDlgItemTextW(dialog, IDC_NAME, L"CU monthly");
    test_support::click(dialog, IDOK);
  });
  EXPECT_EQ(S_OK, own_->Show(0));
  EXPECT_EQ(1u, calls().all("IkvExpirationRuleService::add_rule").size());
  EXPECT_EQ(2u, host_.rules().size());
}

TEST_F(ShowTest, AnyRuleNumberEndsWithSuccess) {
  initialize();
  for (const long id : {8L, -1L, LONG_MAX, LONG_MIN}) {
    DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
    EXPECT_EQ(S_OK, own_->Show(id)) << id;
    take_reports();
  }
  EXPECT_EQ(1u, host_.rules().size());
}

TEST_F(ShowTest, BeforeInitializeItFailsAndIsTraced) {
  EXPECT_EQ(E_POINTER, own_->Show(7));
  EXPECT_EQ(traced("80004003"), take_reports().back());
}

TEST_F(ShowTest, WithoutARuleServiceItFailsAndIsTraced) {
  host_.record_queries(true);
  calls().fail("kvStorage::QueryInterface(IkvExpirationRuleService)", {E_NOINTERFACE, Fault::Out::null});
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(E_POINTER, own_->Show(7));
  EXPECT_EQ(traced("80004003"), take_reports().back());
}

TEST_F(ShowTest, FailureOfTheHostIsReturnedAsItIs) {
  initialize();
  for (const HRESULT failure : {E_FAIL, E_ACCESSDENIED, REGDB_E_CLASSNOTREG, E_OUTOFMEMORY}) {
    calls().fail("kvTable::CreateInstance", {failure, Fault::Out::null});
    EXPECT_EQ(failure, own_->Show(7));
    char hresult[16];
    std::snprintf(hresult, sizeof hresult, "%lx", static_cast<unsigned long>(failure));
    EXPECT_EQ(traced(hresult), take_reports().back());
  }
}

TEST_F(ShowTest, HostMayReleaseThePluginWhileTheEditorIsOpen) {
  initialize();
  plugin_ = nullptr;
  IzdExpirationRulesPlugin* own = own_.Detach();
  DialogDriver driver([&](HWND dialog) {
    own->Release();
    EXPECT_EQ(S_FALSE, module_.can_unload());
    test_support::click(dialog, IDOK);
  });
  EXPECT_EQ(S_OK, own->Show(7));
  EXPECT_EQ(1u, calls().all("IkvExpirationRuleService::update_rule").size()) << "what was typed is saved";
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(ShowTest, EditorIsOwnedByTheActiveWindow) {
  initialize();
  const test_support::HostWindow window;
  DialogDriver driver([&](HWND dialog) {
    EXPECT_EQ(window.get(), GetWindow(dialog, GW_OWNER));
    test_support::click(dialog, IDCANCEL);
  });
  EXPECT_EQ(S_OK, own_->Show(7));
}

}  // namespace
}  // namespace module_test
