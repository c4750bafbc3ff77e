#include "DialogScript.h"
#include "ModuleTest.h"
#include "OwnedWindow.h"
#include "RuleList.h"

namespace module_test {
namespace {

using test_support::DialogDriver;
using test_support::Fault;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char caught[] = "CREATE ERROR  | zdExpirationRulePlugin.cpp:107 DoCommand";

class CommandTest : public HostedTest {
 protected:
  /// Runs a command, closes the dialogs that it opens and returns how many there were. Each must be the rule list.
  int dialogs_of(long id, const VARIANT& parameter = {}) {
    DialogDriver driver([](HWND dialog) {
      EXPECT_TRUE(test_support::is_rule_list(dialog));
      test_support::click(dialog, IDCANCEL);
    });
    EXPECT_EQ(S_OK, plugin_->DoCommand(id, parameter)) << "command " << id;
    return driver.dialogs();
  }
};

TEST_F(CommandTest, BothIdsOpenTheSameList) {
  initialize();
  EXPECT_EQ(1, dialogs_of(menu_id));
  EXPECT_EQ(1, dialogs_of(hot_key_id));
}

TEST_F(CommandTest, AnyOtherIdIsRefusedWithoutAReport) {
  initialize();
  for (const long id : {0L, 1L, -1L, menu_id - 1, hot_key_id + 1, LONG_MAX, LONG_MIN}) {
    EXPECT_EQ(E_INVALIDARG, result_without_dialog(id)) << id;
  }
  EXPECT_THAT(take_reports(), IsEmpty());
}

TEST_F(CommandTest, ParameterIsIgnored) {
  initialize();
  VARIANT odd = {};
  odd.vt = VT_BSTR;
  EXPECT_EQ(1, dialogs_of(menu_id, odd));
  odd.vt = VT_DISPATCH;
  odd.pdispVal = storage_;
  EXPECT_EQ(1, dialogs_of(menu_id, odd));
  odd.vt = VT_ERROR;
  odd.scode = DISP_E_PARAMNOTFOUND;
  EXPECT_EQ(1, dialogs_of(menu_id, odd));
  odd.vt = 0x7FFF;
  odd.ullVal = 0xDEADBEEFDEADBEEF;
  EXPECT_EQ(1, dialogs_of(menu_id, odd));
  EXPECT_EQ(5u, references(storage_));
}

TEST_F(CommandTest, BeforeInitializeItFailsAndIsReported) {
  EXPECT_EQ(E_FAIL, result_without_dialog(menu_id));
  EXPECT_EQ(E_FAIL, result_without_dialog(0));
  EXPECT_THAT(take_reports(), ElementsAre(caught, caught));
}

TEST_F(CommandTest, IdOfAFailingGetterCountsAsZero) {
  initialize();
  for (const Fault& fault : {Fault{E_FAIL, Fault::Out::untouched}, Fault{E_ACCESSDENIED, Fault::Out::null},
                             Fault{S_FALSE, Fault::Out::untouched}}) {
    calls().fail_all("IkvMenuItem::get_CommandID", fault);
    EXPECT_EQ(1, dialogs_of(0));
    EXPECT_EQ(1, dialogs_of(hot_key_id)) << "the other id still counts";
    EXPECT_EQ(E_INVALIDARG, result_without_dialog(menu_id));
    calls().clear_faults();
    calls().fail_all("IkvHotKey::get_CommandID", fault);
    EXPECT_EQ(1, dialogs_of(0));
    EXPECT_EQ(1, dialogs_of(menu_id));
    EXPECT_EQ(E_INVALIDARG, result_without_dialog(hot_key_id));
    calls().clear_faults();
  }
  EXPECT_THAT(take_reports(), IsEmpty());
}

TEST_F(CommandTest, ResultOfTheGetterIsIgnored) {
  initialize();
  calls().fail_all("IkvMenuItem::get_CommandID", {E_FAIL, Fault::Out::given});
  EXPECT_EQ(1, dialogs_of(menu_id)) << "the value counts, whatever the getter returns";
}

TEST_F(CommandTest, IdsAreReadAgainForEachCommand) {
  initialize();
  calls().forget();
  EXPECT_EQ(E_INVALIDARG, result_without_dialog(7));
  EXPECT_THAT(calls().all(), ElementsAre("IkvMenuItem::get_CommandID", "IkvHotKey::get_CommandID"));
}

TEST_F(CommandTest, ListIsOwnedByTheActiveWindow) {
  const test_support::HostWindow host_window;
  initialize();
  DialogDriver driver([&](HWND dialog) {
    EXPECT_EQ(host_window.get(), GetWindow(dialog, GW_OWNER));
    EXPECT_FALSE(IsWindowEnabled(host_window.get()));
    test_support::click(dialog, IDCANCEL);
  });
  EXPECT_EQ(S_OK, command(menu_id));
  EXPECT_TRUE(IsWindowEnabled(host_window.get()));
  EXPECT_EQ(1, driver.dialogs());
}

TEST_F(CommandTest, ListShowsTheHostsRules) {
  host_.rules() = {{3, L"IF"}, {4, L"CU"}};
  initialize();
  int items = 0;
  DialogDriver driver([&](HWND dialog) {
    items = test_support::RuleList(dialog).count();
    test_support::click(dialog, IDCANCEL);
  });
  EXPECT_EQ(S_OK, command(menu_id));
  EXPECT_EQ(2, items);
}

TEST_F(CommandTest, HostMayCallAgainWhileTheListIsOpen) {
  initialize();
  int depth = 0;
  DialogDriver driver([&](HWND dialog) {
    if (++depth == 1) {
      EXPECT_EQ(E_INVALIDARG, command(7));
      EXPECT_EQ(S_OK, command(hot_key_id)) << "a second list opens over the first";
    }
    test_support::click(dialog, IDCANCEL);
  });
  EXPECT_EQ(S_OK, command(menu_id));
  EXPECT_EQ(2, driver.dialogs());
}

TEST_F(CommandTest, HostMayReleaseThePluginWhileTheListIsOpen) {
  initialize();
  IkvPlugin* plugin = plugin_.Detach();
  DialogDriver driver([&](HWND dialog) {
    plugin->Release();
    EXPECT_EQ(S_FALSE, module_.can_unload());
    test_support::click(dialog, IDCANCEL);
  });
  VARIANT none = {};
  EXPECT_EQ(S_OK, plugin->DoCommand(menu_id, none));
  EXPECT_EQ(1, driver.dialogs());
  EXPECT_EQ(S_OK, module_.can_unload());
}

TEST_F(CommandTest, UninitializeReleasesNothingSoCommandsStillWork) {
  initialize();
  const auto living = host_.living();
  EXPECT_EQ(S_OK, plugin_->Uninitialize());
  EXPECT_EQ(living, host_.living());
  EXPECT_EQ(1, dialogs_of(menu_id));
  EXPECT_EQ(S_OK, plugin_->Uninitialize());
}

TEST_F(CommandTest, UninitializeAndSelectionDoNothingBeforeInitialize) {
  EXPECT_EQ(S_OK, plugin_->Uninitialize());
  EXPECT_EQ(S_OK, plugin_->OnSelectionChanged(nullptr));
  EXPECT_EQ(S_OK, plugin_->OnSelectionChanged(storage_));
  EXPECT_EQ(1u, references(storage_));
  EXPECT_THAT(take_reports(), IsEmpty());
}

}  // namespace
}  // namespace module_test
