#include <windows.h>
#include <commctrl.h>

#include <thread>

#include "ImportProbe.h"
#include "LateBound.h"
#include "ModuleTest.h"
#include "Owned.h"
#include "TextEncoding.h"

namespace module_test {
namespace {

using test_support::Fault;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char caught_initialize[] = "CREATE ERROR  | zdExpirationRulePlugin.cpp:84 Initialize";
constexpr char caught_command[] = "CREATE ERROR  | zdExpirationRulePlugin.cpp:107 DoCommand";

/// A text of the host's shared resource module.
std::wstring shared_text(UINT id) {
  wchar_t text[256] = {};
  const base::LoadedModule module(LoadLibraryW(L"zdCommonRes.DLL"));
  EXPECT_NE(0, LoadStringW(module.get(), id, text, ARRAYSIZE(text)));
  return text;
}

ZD_IMPORT_PROBE(InitCommonControlsEx, CommonControlsProbe);

class InitializeTest : public HostedTest {
 protected:
  /// How many objects of a class of the host are referenced.
  auto living(const std::string& name) const {
    const auto all = host_.living();
    return std::count_if(all.begin(), all.end(),
                         [&](const std::string& object) { return object.starts_with(name + " with"); });
  }
};

TEST_F(InitializeTest, ReportsAFailedEntryWithoutAReferenceToThePlugin) {
  for (const char* call : {"IkvSubMenu::AddCommand", "IkvHotKeyCollection::AddHotKey"}) {
    ULONG before = 0;
    std::vector<ULONG> during;
    calls().fail(call);
    before = references(plugin_);
    test_support::on_command([&](const test_support::RecordedCommand&) { during.push_back(references(plugin_)); });
    EXPECT_EQ(E_FAIL, initialize());
    ASSERT_FALSE(during.empty());
    EXPECT_EQ(before, during.front()) << call;
    EXPECT_EQ(2u, take_reports().size());
    calls().clear_faults();
  }
}

// An exception of another compiler unwinds nothing: a lock that was held during the call would stay held.
TEST_F(InitializeTest, HoldsNoLockWhileTheHostIsCalled) {
  int served = 0;
  for (const char* call : {"IkvMainMenu::FindSubMenu", "IkvMainMenu::AddSubMenu", "IkvSubMenu::AddCommand",
                           "IkvHotKeyCollection::AddHotKey"}) {
    calls().inside(call, [&] {
      std::thread other([&] {
        const auto plugin = module_.plugin();
        DISPID id = DISPID_UNKNOWN;
        EXPECT_EQ(S_OK, id_of(plugin, L"DoCommand", id));
        EXPECT_EQ(E_INVALIDARG, plugin->Initialize(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
        ++served;
      });
      other.join();
    });
  }
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(4, served);
  EXPECT_FALSE(take_reports().empty()) << "the other threads report";
}

TEST_F(InitializeTest, AddsOneCommandAndOneHotKeyAimedAtThePlugin) {
  EXPECT_EQ(S_OK, initialize());
  const auto quoted = [](UINT id) { return '"' + base::to_utf8(shared_text(id)) + '"'; };
  EXPECT_THAT(calls().all(), ElementsAre("IkvMainMenu::FindSubMenu(" + quoted(4028) + ")",
                                         "IkvMainMenu::AddSubMenu(" + quoted(4028) + ", " + quoted(4033) + ", 1)",
                                         "IkvSubMenu::AddCommand(" + quoted(4052) + ", 0, 0, 0, null, 3, object)",
                                         "IkvHotKeyCollection::AddHotKey(9, 85, object)"));
  ASSERT_EQ(2u, host_.commands().size());
  for (const auto& [id, target] : host_.commands()) {
    EXPECT_EQ(static_cast<IDispatch*>(plugin_.GetInterfacePtr()), target) << "command " << id;
  }
}

TEST_F(InitializeTest, KeepsTheHostsObjectsAndNoReferenceToItself) {
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(1u, references(plugin_));
  EXPECT_THAT(host_.living(), testing::IsSupersetOf({"kvSubMenu with references: 1", "kvMenuItem with references: 1",
                                                     "kvHotKey with references: 1"}));
  EXPECT_EQ(5u, references(storage_)) << "four entries of the storage block and the test";
  EXPECT_EQ(1u, references(menu_));
  EXPECT_EQ(1u, references(hot_keys_));
}

TEST_F(InitializeTest, DoesNotTouchTheControlBarAndTheContextMenu) {
  host_.record_queries(true);
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(1u, references(control_bar_));
  EXPECT_EQ(1u, references(context_menu_));
  EXPECT_THAT(calls().all("kvMainMenu::QueryInterface"), ElementsAre("kvMainMenu::QueryInterface(IkvMainMenu)"));
}

TEST_F(InitializeTest, InitialisesTheCommonControlsOnce) {
  std::vector<DWORD> classes;
  CommonControlsProbe controls(module_.handle());
  controls.replace([&](const INITCOMMONCONTROLSEX* given) {
    EXPECT_EQ(sizeof(INITCOMMONCONTROLSEX), given->dwSize);
    classes.push_back(given->dwICC);
    return TRUE;
  });
  EXPECT_EQ(S_OK, initialize());
  EXPECT_THAT(classes, ElementsAre(0x301));
}

TEST_F(InitializeTest, ExistingSubmenuIsUsedAndNoneIsAdded) {
  host_.add_submenu(shared_text(4028));
  EXPECT_EQ(S_OK, initialize());
  EXPECT_THAT(calls().all("IkvMainMenu::AddSubMenu"), IsEmpty());
  EXPECT_EQ(1u, calls().all("IkvSubMenu::AddCommand").size());
  EXPECT_EQ(1, host_.submenus());
}

// Arguments.

TEST_F(InitializeTest, EveryPointerNullReportsOnlyTheFirst) {
  EXPECT_EQ(E_INVALIDARG, plugin_->Initialize(nullptr, nullptr, nullptr, nullptr, nullptr, nullptr));
  EXPECT_THAT(take_reports(), ElementsAre("ASSERT pMainMenu != 0 | zdExpirationRulePlugin.cpp:70 Initialize"));
}

TEST_F(InitializeTest, EachMissingPointerIsReportedWithItsLine) {
  const struct {
    base::ComPtr<IDispatch>& argument;
    const char* assertion;
  } missing[] = {{menu_, "pMainMenu != 0 | zdExpirationRulePlugin.cpp:70"},
                 {control_bar_, "MainControlBar != 0 | zdExpirationRulePlugin.cpp:71"},
                 {context_menu_, "PortfolioContextMenu != 0 | zdExpirationRulePlugin.cpp:72"},
                 {hot_keys_, "PortfolioHotKeys != 0 | zdExpirationRulePlugin.cpp:73"}};
  for (const auto& [argument, assertion] : missing) {
    const base::ComPtr<IDispatch> given = std::exchange(argument, nullptr);
    EXPECT_EQ(E_INVALIDARG, initialize());
    EXPECT_THAT(take_reports(), ElementsAre("ASSERT " + std::string(assertion) + " Initialize"));
    argument = given;
  }
}

TEST_F(InitializeTest, PointersAreCheckedInTheirOrder) {
  hot_keys_ = nullptr;
  context_menu_ = nullptr;
  registry_path_ = L"";
  EXPECT_EQ(E_INVALIDARG, initialize());
  EXPECT_THAT(take_reports(),
              ElementsAre("ASSERT PortfolioContextMenu != 0 | zdExpirationRulePlugin.cpp:72 Initialize"));
}

TEST_F(InitializeTest, EmptyRegistryPathIsRefusedWithoutAReport) {
  for (const BSTR path : {static_cast<BSTR>(nullptr), SysAllocString(L"")}) {
    EXPECT_EQ(E_INVALIDARG, plugin_->Initialize(menu_, control_bar_, context_menu_, hot_keys_, path, storage_));
    SysFreeString(path);
  }
  EXPECT_THAT(take_reports(), IsEmpty());
}

TEST_F(InitializeTest, BadArgumentsKeepAndInitialiseNothing) {
  host_.record_queries(true);
  registry_path_ = L"";
  const CommonControlsProbe controls(module_.handle());
  EXPECT_EQ(E_INVALIDARG, initialize());
  EXPECT_EQ(0, controls.calls());
  EXPECT_THAT(calls().all(), IsEmpty());
  EXPECT_EQ(1u, references(storage_));
}

// The storage block.

TEST_F(InitializeTest, NullStorageCreatesTheHostsOwn) {
  storage_ = nullptr;
  EXPECT_EQ(S_OK, initialize());
  EXPECT_THAT(calls().all("kvStorage"), ElementsAre("kvStorage::CreateInstance(IkvStorage)"));
  EXPECT_THAT(host_.living(), testing::Contains("kvStorage with references: 4"));
}

TEST_F(InitializeTest, StorageThatCannotBeCreatedIsNoFailure) {
  for (const HRESULT failure : {E_FAIL, REGDB_E_CLASSNOTREG, E_OUTOFMEMORY}) {
    storage_ = nullptr;
    calls().fail("kvStorage::CreateInstance", {failure, Fault::Out::untouched});
    EXPECT_EQ(S_OK, initialize());
    EXPECT_THAT(host_.living(), testing::Not(testing::Contains(testing::StartsWith("kvStorage"))));
  }
}

TEST_F(InitializeTest, StorageIsAskedForItsFourInterfacesInTheirOrder) {
  host_.record_queries(true);
  EXPECT_EQ(S_OK, initialize());
  EXPECT_THAT(calls().all("kvStorage::QueryInterface"),
              ElementsAre("kvStorage::QueryInterface(IkvStorage)", "kvStorage::QueryInterface(IkvStorageSession)",
                          "kvStorage::QueryInterface(IkvSymbolSourceService)",
                          "kvStorage::QueryInterface(IkvExpirationRuleService)"));
}

TEST_F(InitializeTest, MissingInterfaceOfTheStorageLeavesItsEntryEmpty) {
  host_.record_queries(true);
  for (const HRESULT failure : {E_NOINTERFACE, E_FAIL, E_OUTOFMEMORY, S_FALSE, S_OK}) {
    for (const char* name : {"IkvStorageSession", "IkvSymbolSourceService", "IkvExpirationRuleService"}) {
      storage_ = host_.storage();
      calls().fail("kvStorage::QueryInterface(" + std::string(name) + ")", {failure, Fault::Out::untouched});
      EXPECT_EQ(S_OK, initialize()) << name;
      EXPECT_EQ(4u, references(storage_)) << "three entries and the test";
      calls().clear_faults();
    }
  }
}

TEST_F(InitializeTest, StorageWithoutItsMainInterfaceLeavesTheBlockEmpty) {
  host_.record_queries(true);
  for (const HRESULT failure : {E_NOINTERFACE, E_FAIL, E_OUTOFMEMORY, S_FALSE}) {
    storage_ = host_.storage();
    calls().fail("kvStorage::QueryInterface(IkvStorage)", {failure, Fault::Out::untouched});
    EXPECT_EQ(S_OK, initialize());
    EXPECT_EQ(1u, references(storage_));
    calls().clear_faults();
  }
}

// A host that fails on the way.

struct Failure {
  const char* call;
  Fault fault;
  HRESULT hresult;
  std::vector<std::string> reports;
};

std::string assertion(int line, const char* function, const char* hresult) {
  return std::string("ASSERT ") + hresult + " | zdExpirationRulePlugin.cpp:" + std::to_string(line) + ' ' + function;
}

std::vector<Failure> failures() {
  const char* menu = "add_zd_menu_items";
  const char* key = "create_zd_hot_key";
  const auto untouched = [](HRESULT result) { return Fault{result, Fault::Out::untouched}; };
  const auto given = [](HRESULT result) { return Fault{result, Fault::Out::given}; };
  return {
      {"kvMainMenu::QueryInterface", untouched(E_NOINTERFACE), E_FAIL, {caught_initialize}},
      {"kvMainMenu::QueryInterface", untouched(E_ACCESSDENIED), E_FAIL, {caught_initialize}},
      {"kvMainMenu::QueryInterface", untouched(S_OK), E_FAIL, {caught_initialize}},
      {"IkvMainMenu::FindSubMenu", untouched(E_FAIL), E_FAIL, {assertion(136, menu, "80004005"), caught_initialize}},
      {"IkvMainMenu::FindSubMenu", given(E_FAIL), E_FAIL, {assertion(136, menu, "80004005"), caught_initialize}},
      {"IkvMainMenu::FindSubMenu",
       untouched(E_OUTOFMEMORY),
       E_FAIL,
       {assertion(136, menu, "8007000e"), caught_initialize}},
      {"IkvMainMenu::FindSubMenu", untouched(S_FALSE), S_OK, {}},
      {"IkvMainMenu::FindSubMenu", untouched(S_OK), S_OK, {}},
      {"IkvMainMenu::AddSubMenu", untouched(E_FAIL), E_FAIL, {assertion(144, menu, "80004005"), caught_initialize}},
      {"IkvMainMenu::AddSubMenu", given(E_ACCESSDENIED), E_FAIL, {assertion(144, menu, "80070005"), caught_initialize}},
      {"IkvMainMenu::AddSubMenu", untouched(S_OK), E_FAIL, {caught_initialize}},
      {"IkvMainMenu::AddSubMenu", untouched(S_FALSE), E_FAIL, {caught_initialize}},
      {"IkvMainMenu::AddSubMenu", given(S_FALSE), S_OK, {}},
      {"IkvSubMenu::AddCommand", untouched(E_FAIL), E_FAIL, {assertion(150, menu, "80004005"), caught_initialize}},
      {"IkvSubMenu::AddCommand", given(E_ABORT), E_FAIL, {assertion(150, menu, "80004004"), caught_initialize}},
      {"IkvSubMenu::AddCommand", given(S_FALSE), S_OK, {}},
      {"IkvSubMenu::AddCommand", untouched(S_OK), S_OK, {}},
      {"kvHotKeyCollection::QueryInterface", untouched(E_NOINTERFACE), E_FAIL, {caught_initialize}},
      {"kvHotKeyCollection::QueryInterface", untouched(E_FAIL), E_FAIL, {caught_initialize}},
      {"IkvHotKeyCollection::AddHotKey",
       untouched(E_FAIL),
       E_FAIL,
       {assertion(160, key, "80004005"), caught_initialize}},
      {"IkvHotKeyCollection::AddHotKey", given(E_FAIL), E_FAIL, {assertion(160, key, "80004005"), caught_initialize}},
      {"IkvHotKeyCollection::AddHotKey", given(S_FALSE), S_OK, {}},
      {"IkvHotKeyCollection::AddHotKey", untouched(S_OK), S_OK, {}},
      {"kvHotKey::QueryInterface", untouched(E_NOINTERFACE), S_OK, {}},
      {"kvHotKey::QueryInterface", untouched(E_FAIL), E_FAIL, {caught_initialize}},
  };
}

TEST_F(InitializeTest, FailingHostCallIsReportedAndReturnedAndInitializeCanBeRepeated) {
  host_.record_queries(true);
  for (const Failure& failure : failures()) {
    SCOPED_TRACE(testing::Message() << failure.call << " returns " << std::hex << failure.fault.result);
    plugin_ = module_.plugin();
    host_.remove_submenus();
    calls().fail(failure.call, failure.fault);
    EXPECT_EQ(failure.hresult, initialize());
    EXPECT_EQ(failure.reports, take_reports());
    calls().clear_faults();
    EXPECT_EQ(S_OK, initialize());
    EXPECT_EQ(1u, references(plugin_));
  }
}

TEST_F(InitializeTest, FailingHotKeyLeavesTheMenuCommandInPlace) {
  calls().fail("IkvHotKeyCollection::AddHotKey");
  EXPECT_EQ(E_FAIL, initialize());
  EXPECT_EQ(2u, take_reports().size());
  EXPECT_THAT(host_.living(), testing::IsSupersetOf({"kvSubMenu with references: 1", "kvMenuItem with references: 1"}));
  EXPECT_EQ(5u, references(storage_)) << "the storage block was filled before";
}

TEST_F(InitializeTest, FailingMenuLeavesTheHotKeyUntouched) {
  calls().fail("IkvMainMenu::FindSubMenu");
  EXPECT_EQ(E_FAIL, initialize());
  EXPECT_EQ(2u, take_reports().size());
  EXPECT_THAT(calls().all("IkvHotKeyCollection"), IsEmpty());
}

TEST_F(InitializeTest, CommandNeedsBothTheMenuItemAndTheHotKey) {
  for (const char* call : {"IkvSubMenu::AddCommand", "IkvHotKeyCollection::AddHotKey"}) {
    plugin_ = module_.plugin();
    calls().fail(call, {S_OK, Fault::Out::untouched});
    EXPECT_EQ(S_OK, initialize());
    EXPECT_EQ(E_FAIL, result_without_dialog(menu_id)) << call;
    EXPECT_THAT(take_reports(), ElementsAre(caught_command));
  }
}

// A second time.

TEST_F(InitializeTest, SecondCallAddsAgainAndHoldsTheNewestObjects) {
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(2u, calls().all("IkvSubMenu::AddCommand").size());
  EXPECT_EQ(2u, calls().all("IkvHotKeyCollection::AddHotKey").size());
  EXPECT_EQ(1u, calls().all("IkvMainMenu::AddSubMenu").size()) << "the submenu is found the second time";
  const auto living = host_.living();
  EXPECT_EQ(1, std::count(living.begin(), living.end(), "kvMenuItem with references: 1"));
  EXPECT_EQ(1, std::count(living.begin(), living.end(), "kvHotKey with references: 1"));
  EXPECT_EQ(E_INVALIDARG, result_without_dialog(menu_id)) << "the id of the first menu item";
  EXPECT_EQ(E_INVALIDARG, result_without_dialog(hot_key_id)) << "the id of the first hot key";
}

TEST_F(InitializeTest, SecondCallWithTheSameStorageAsksForItsOtherInterfacesAlone) {
  host_.record_queries(true);
  EXPECT_EQ(S_OK, initialize());
  const ULONG held = references(storage_);
  calls().forget();
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(held, references(storage_));
  EXPECT_THAT(
      calls().all("kvStorage::QueryInterface"),
      ElementsAre("kvStorage::QueryInterface(IkvStorageSession)", "kvStorage::QueryInterface(IkvSymbolSourceService)",
                  "kvStorage::QueryInterface(IkvExpirationRuleService)"));
}

TEST_F(InitializeTest, SecondCallThatGetsNoSubmenuHoldsTheFirstNoLonger) {
  EXPECT_EQ(S_OK, initialize());
  calls().fail("IkvMainMenu::FindSubMenu", {E_FAIL, Fault::Out::untouched});
  EXPECT_EQ(E_FAIL, initialize());
  EXPECT_EQ(2u, take_reports().size());
  EXPECT_EQ(0, living("kvSubMenu"));
  EXPECT_EQ(1, living("kvMenuItem")) << "what comes after the failure is kept";
  EXPECT_EQ(1, living("kvHotKey"));
}

TEST_F(InitializeTest, SecondCallThatGetsNoMenuItemHoldsTheFirstNoLonger) {
  for (const Fault& fault :
       {Fault{S_OK, Fault::Out::untouched}, Fault{S_OK, Fault::Out::null}, Fault{E_FAIL, Fault::Out::untouched}}) {
    plugin_ = module_.plugin();
    EXPECT_EQ(S_OK, initialize());
    calls().fail("IkvSubMenu::AddCommand", fault);
    EXPECT_EQ(FAILED(fault.result) ? E_FAIL : S_OK, initialize());
    take_reports();
    ASSERT_EQ(0, living("kvMenuItem"));
    EXPECT_EQ(1, living("kvHotKey"));
    EXPECT_EQ(E_FAIL, result_without_dialog(menu_id));
    EXPECT_EQ(E_FAIL, result_without_dialog(hot_key_id));
    EXPECT_THAT(take_reports(), ElementsAre(caught_command, caught_command));
  }
}

TEST_F(InitializeTest, SecondCallThatGetsNoHotKeyHoldsTheFirstNoLonger) {
  host_.record_queries(true);
  const std::pair<const char*, Fault> failures[] = {
      {"IkvHotKeyCollection::AddHotKey", {S_OK, Fault::Out::untouched}},
      {"IkvHotKeyCollection::AddHotKey", {S_OK, Fault::Out::null}},
      {"kvHotKey::QueryInterface", {E_NOINTERFACE, Fault::Out::untouched}},
  };
  for (const auto& [call, fault] : failures) {
    plugin_ = module_.plugin();
    EXPECT_EQ(S_OK, initialize());
    calls().fail(call, fault);
    EXPECT_EQ(S_OK, initialize()) << call;
    ASSERT_EQ(0, living("kvHotKey")) << call;
    EXPECT_EQ(1, living("kvMenuItem")) << call;
    EXPECT_EQ(E_FAIL, result_without_dialog(menu_id)) << call;
    EXPECT_EQ(E_FAIL, result_without_dialog(hot_key_id)) << call;
    EXPECT_THAT(take_reports(), ElementsAre(caught_command, caught_command));
  }
}

TEST_F(InitializeTest, SecondCallWhoseHotKeyFailsKeepsTheFirst) {
  EXPECT_EQ(S_OK, initialize());
  calls().fail("IkvHotKeyCollection::AddHotKey");
  EXPECT_EQ(E_FAIL, initialize());
  EXPECT_EQ(2u, take_reports().size());
  EXPECT_EQ(1, living("kvHotKey"));
}

TEST_F(InitializeTest, SecondCallWithAnotherStorageLetsTheFirstGo) {
  EXPECT_EQ(S_OK, initialize());
  const base::ComPtr<IDispatch> first = storage_;
  storage_ = host_.storage();
  EXPECT_EQ(S_OK, initialize());
  EXPECT_EQ(1u, references(first)) << "the test alone";
  EXPECT_EQ(5u, references(storage_));
}

TEST_F(InitializeTest, OtherObjectsThanTheHostsAreRefusedWithoutACrash) {
  base::ComPtr<IDispatch> stranger = host_.storage();
  menu_ = stranger;
  EXPECT_EQ(E_FAIL, initialize());
  EXPECT_THAT(take_reports(), ElementsAre(caught_initialize));
  menu_ = host_.main_menu();
  hot_keys_ = stranger;
  EXPECT_EQ(E_FAIL, initialize());
  EXPECT_THAT(take_reports(), ElementsAre(caught_initialize));
  hot_keys_ = host_.hot_keys();
  storage_ = host_.main_menu();
  EXPECT_EQ(S_OK, initialize());
}

}  // namespace
}  // namespace module_test
