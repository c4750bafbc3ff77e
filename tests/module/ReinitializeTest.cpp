#include <windows.h>

#include <functional>
#include <ostream>

#include "DialogScript.h"
#include "ImportProbe.h"
#include "ModuleTest.h"
#include "RuleList.h"

namespace module_test {
namespace {

using test_support::HostRule;
using test_support::RuleList;
using testing::Contains;
using testing::IsEmpty;
using testing::Not;

ZD_IMPORT_PROBE(LoadLibraryW, TextLibraryProbe);

const HostRule stored_rule = {7, L"IF quarter"};

/// Inside one of its calls the host gives the plug-in other objects and drops its own references to those before.
class Reinitialize : public HostedTest {
 protected:
  Reinitialize() {
    host_.rules() = {stored_rule};
    host_.on_release([this](const std::string& name) { released_.push_back(name); });
  }

  void TearDown() override {
    host_.on_release({});
    HostedTest::TearDown();
  }

  void initialize_with_other_objects() {
    ++inside_;
    menu_ = host_.main_menu();
    hot_keys_ = host_.hot_keys();
    storage_ = host_.storage();
    EXPECT_EQ(S_OK, initialize());
  }

  /// As every caller does, keeps the arguments until the call returns.
  HRESULT initialize_with_kept_arguments() {
    const base::ComPtr<IDispatch> arguments[] = {menu_, hot_keys_, storage_};
    return initialize();
  }

  /// Expects that no object of the class is destroyed before the call that it serves has returned.
  void initialize_inside(const char* call, const std::string& object) {
    calls().inside(call, [this, call, object] {
      released_.clear();
      initialize_with_other_objects();
      EXPECT_THAT(released_, Not(Contains(object))) << call;
    });
  }

  std::vector<std::string> released_;
  int inside_ = 0;
};

/// A call of the host, what its object is, and what the user does so that it comes.
struct ServingCall {
  const char* name;
  const char* call;
  const char* object;
  int button;
};

void PrintTo(const ServingCall& serving, std::ostream* out) { *out << serving.name; }

class ReinitializeInACall : public Reinitialize, public testing::WithParamInterface<ServingCall> {};

TEST_P(ReinitializeInACall, KeepsTheObjectThatServesTheCall) {
  const auto& [name, call, object, button] = GetParam();
  ASSERT_EQ(S_OK, initialize());
  HostRule typed = stored_rule;
  typed.name = L"IF month";
  const test_support::DialogScript user({[button = button](HWND list) {
                                          RuleList(list).select_rule(stored_rule.id);
                                          test_support::send_click(list, button);
                                        }},
                                        {.shown = stored_rule.name, .rule = typed, .second_name = {}, .before = {}},
                                        stored_rule.name);
  initialize_inside(call, object);
  EXPECT_EQ(S_OK, plugin_->DoCommand(menu_id, VARIANT{}));
  EXPECT_EQ(1, inside_);
  EXPECT_EQ(1, user.lists());
  take_reports();
}

INSTANTIATE_TEST_SUITE_P(
    Of, ReinitializeInACall,
    testing::Values(ServingCall{"LoadRules", "IkvExpirationRuleService::load_rules", "kvStorage", IDC_EDIT_RULE},
                    ServingCall{"UpdateRule", "IkvExpirationRuleService::update_rule", "kvStorage", IDC_EDIT_RULE},
                    ServingCall{"DeleteRule", "IkvExpirationRuleService::delete_rule", "kvStorage", IDC_DELETE_RULE},
                    ServingCall{"LoadSettings", "IkvSymbolSourceService::load_symbol_source_settings", "kvStorage",
                                IDC_DELETE_RULE},
                    ServingCall{"MenuItem", "IkvMenuItem::get_CommandID", "kvMenuItem", IDC_EDIT_RULE},
                    ServingCall{"HotKey", "IkvHotKey::get_CommandID", "kvHotKey", IDC_EDIT_RULE}),
    [](const auto& test) { return test.param.name; });

TEST_F(Reinitialize, InAddRuleKeepsTheServiceThatAddsIt) {
  ASSERT_EQ(S_OK, initialize());
  HostRule typed = stored_rule;
  typed.name = L"IF month";
  const test_support::DialogScript user({[](HWND list) { test_support::send_click(list, IDC_ADD_RULE); }},
                                        {.shown = L"新规则", .rule = typed, .second_name = {}, .before = {}});
  initialize_inside("IkvExpirationRuleService::add_rule", "kvStorage");
  EXPECT_EQ(S_OK, plugin_->DoCommand(menu_id, VARIANT{}));
  EXPECT_EQ(1, inside_);
  EXPECT_EQ(2u, host_.rules().size());
}

TEST_F(Reinitialize, InAddCommandKeepsTheSubmenu) {
  initialize_inside("IkvSubMenu::AddCommand", "kvSubMenu");
  EXPECT_EQ(S_OK, initialize_with_kept_arguments());
  EXPECT_EQ(1, inside_);
}

// Nothing but the plug-in holds a storage object that it created itself.
TEST_F(Reinitialize, InAQueryKeepsTheStorageObjectThatIsAsked) {
  host_.record_queries(true);
  storage_ = nullptr;
  initialize_inside("kvStorage::QueryInterface(IkvStorageSession)", "kvStorage");
  EXPECT_EQ(S_OK, initialize_with_kept_arguments());
  EXPECT_EQ(1, inside_);
}

TEST_F(Reinitialize, InTheReportOfAMissingCaptionKeepsTheSubmenu) {
  TextLibraryProbe libraries(module_.handle());
  libraries.replace([&](const wchar_t* name) {
    return lstrcmpiW(name, L"zdCommonRes.DLL") == 0 ? nullptr : libraries.original(name);
  });
  int asserted = 0;
  // The caption of the command is the last text that `Initialize` asks for.
  test_support::on_command([&](const test_support::RecordedCommand& command) {
    if (command.word != L"PROCESS" || inside_ > 0 || calls().all("IkvMainMenu::AddSubMenu").empty()) return;
    ++asserted;
    released_.clear();
    initialize_with_other_objects();
    EXPECT_THAT(released_, Not(Contains("kvSubMenu")));
  });
  EXPECT_EQ(S_OK, initialize_with_kept_arguments());
  EXPECT_EQ(1, asserted);
  EXPECT_FALSE(take_reports().empty());
}

TEST_F(Reinitialize, OfACommandThatLosesTheLastReferenceEndsWell) {
  ASSERT_EQ(S_OK, initialize());
  calls().inside("IkvMenuItem::get_CommandID", [this] {
    released_.clear();
    plugin_ = nullptr;
    EXPECT_THAT(released_, IsEmpty()) << "the plug-in lives until the command returns";
  });
  IkvPlugin* plugin = plugin_;
  EXPECT_EQ(E_INVALIDARG, plugin->DoCommand(-1, VARIANT{}));
  EXPECT_THAT(released_, Not(IsEmpty()));
}

}  // namespace
}  // namespace module_test
