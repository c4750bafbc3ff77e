#include "DialogDriver.h"
#include "ErrorInformation.h"
#include "LateBound.h"
#include "ModuleTest.h"

namespace module_test {
namespace {

using test_support::DialogDriver;
using test_support::has_error_information;
using test_support::leave_error_information;

class LateBoundTest : public HostedTest {
 protected:
  std::vector<_variant_t> good_arguments() {
    return {_variant_t(menu_.GetInterfacePtr()),
            _variant_t(control_bar_.GetInterfacePtr()),
            _variant_t(context_menu_.GetInterfacePtr()),
            _variant_t(hot_keys_.GetInterfacePtr()),
            _variant_t(registry_path_),
            _variant_t(storage_.GetInterfacePtr())};
  }

  base::ComPtr<IDispatch> object_ = base::try_query<IDispatch>(plugin_);
  base::ComPtr<IzdExpirationRulesPlugin> own_ = base::try_query<IzdExpirationRulesPlugin>(plugin_);

  void TearDown() override {
    object_ = nullptr;
    own_ = nullptr;
    HostedTest::TearDown();
  }
};

TEST_F(LateBoundTest, MethodsAreFoundByNameInAnyCase) {
  const std::pair<const wchar_t*, DISPID> names[] = {
      {L"Initialize", 1}, {L"OnSelectionChanged", 2}, {L"DoCommand", 3}, {L"Uninitialize", 4}, {L"docommand", 3}};
  for (const auto& [name, expected] : names) {
    DISPID id = 0;
    EXPECT_EQ(S_OK, id_of(object_, name, id));
    EXPECT_EQ(expected, id);
  }
}

TEST_F(LateBoundTest, UnknownNameIsNotFound) {
  DISPID id = 0;
  EXPECT_EQ(DISP_E_UNKNOWNNAME, id_of(object_, L"Close", id));
  EXPECT_EQ(DISPID_UNKNOWN, id);
  EXPECT_EQ(DISP_E_UNKNOWNNAME, id_of(object_, L"", id));
}

TEST_F(LateBoundTest, EachInterfaceKnowsItsOwnMethodsOnly) {
  DISPID id = 0;
  EXPECT_EQ(DISP_E_UNKNOWNNAME, id_of(object_, L"Show", id));
  EXPECT_EQ(S_OK, id_of(own_, L"Show", id));
  EXPECT_EQ(1, id);
  EXPECT_EQ(DISP_E_UNKNOWNNAME, id_of(own_, L"DoCommand", id));
}

TEST_F(LateBoundTest, ParametersAreFoundByName) {
  std::wstring names[] = {L"DoCommand", L"Parameter", L"Id"};
  LPOLESTR pointers[] = {names[0].data(), names[1].data(), names[2].data()};
  DISPID ids[3] = {};
  EXPECT_EQ(S_OK, object_->GetIDsOfNames(IID_NULL, pointers, 3, LOCALE_USER_DEFAULT, ids));
  EXPECT_THAT(ids, testing::ElementsAre(3, 1, 0));
}

TEST_F(LateBoundTest, InitializesThroughInvoke) {
  EXPECT_EQ(S_OK, call(object_, L"Initialize", good_arguments()).hresult);
  EXPECT_EQ(2u, host_.commands().size());
}

TEST_F(LateBoundTest, CommandThroughInvokeOpensTheList) {
  initialize();
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  EXPECT_EQ(S_OK, call(object_, L"DoCommand", {_variant_t(menu_id), _variant_t()}).hresult);
  EXPECT_EQ(1, driver.dialogs());
}

TEST_F(LateBoundTest, HostCallsTheTargetThatItWasGiven) {
  initialize();
  IDispatch* target = host_.commands().at(menu_id);
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  EXPECT_EQ(S_OK, invoke(target, 3, {_variant_t(hot_key_id), _variant_t()}).hresult);
  EXPECT_EQ(1, driver.dialogs());
}

TEST_F(LateBoundTest, ShowThroughInvokeOpensTheEditor) {
  initialize();
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  EXPECT_EQ(S_OK, call(own_, L"Show", {_variant_t(0L)}).hresult);
  EXPECT_EQ(1, driver.dialogs());
}

TEST_F(LateBoundTest, MethodsThatDoNothingSucceed) {
  EXPECT_EQ(S_OK, call(object_, L"OnSelectionChanged", {_variant_t(storage_.GetInterfacePtr())}).hresult);
  EXPECT_EQ(S_OK, call(object_, L"Uninitialize").hresult);
}

TEST_F(LateBoundTest, FailureOfAMethodIsReturnedAsAnException) {
  initialize();
  const LateBoundResult called = call(object_, L"DoCommand", {_variant_t(9L), _variant_t()});
  EXPECT_EQ(DISP_E_EXCEPTION, called.hresult);
  EXPECT_EQ(E_INVALIDARG, called.code);
}

TEST_F(LateBoundTest, FailureShowsNoErrorInformationOfAnotherCall) {
  initialize();
  leave_error_information();
  EXPECT_EQ(L"", call(object_, L"DoCommand", {_variant_t(9L), _variant_t()}).description) << "left before the call";
  EXPECT_FALSE(has_error_information());

  calls().inside("IkvMenuItem::get_CommandID", leave_error_information);
  EXPECT_EQ(L"", call(object_, L"DoCommand", {_variant_t(9L), _variant_t()}).description) << "left by the host";

  calls().fail("IkvMainMenu::FindSubMenu");
  calls().inside("IkvMainMenu::FindSubMenu", leave_error_information);
  EXPECT_EQ(L"", call(object_, L"Initialize", good_arguments()).description);
  EXPECT_FALSE(has_error_information());

  calls().fail("kvTable::CreateInstance", {E_FAIL, test_support::Fault::Out::null});
  calls().inside("kvTable::CreateInstance", leave_error_information);
  EXPECT_EQ(L"", call(own_, L"Show", {_variant_t(7L)}).description);
  EXPECT_FALSE(has_error_information());
  take_reports();
}

TEST_F(LateBoundTest, CallThatReachesNoMethodLeavesNoErrorInformation) {
  leave_error_information();
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke(object_, 5).hresult);
  EXPECT_FALSE(has_error_information());
}

// Too many arguments are refused by the automation library of Windows (DISP_E_BADPARAMCOUNT); Wine's ignores them.
TEST_F(LateBoundTest, TooFewArgumentsAreRefused) {
  std::vector<_variant_t> five = good_arguments();
  five.pop_back();
  for (const LateBoundResult& called :
       {call(object_, L"DoCommand"), call(object_, L"DoCommand", {_variant_t(menu_id)}), call(object_, L"Initialize"),
        call(object_, L"Initialize", five), call(object_, L"OnSelectionChanged"), call(own_, L"Show")}) {
    EXPECT_TRUE(called.hresult == DISP_E_BADPARAMCOUNT || called.hresult == DISP_E_PARAMNOTOPTIONAL)
        << std::hex << called.hresult;
  }
  EXPECT_TRUE(calls().all().empty()) << "nothing reached the host";
}

TEST_F(LateBoundTest, WrongTypeOfAnArgumentIsRefused) {
  EXPECT_EQ(DISP_E_TYPEMISMATCH, call(object_, L"DoCommand", {_variant_t(L"the list"), _variant_t()}).hresult);
  EXPECT_EQ(DISP_E_TYPEMISMATCH, call(own_, L"Show", {_variant_t(L"a rule")}).hresult);
  std::vector<_variant_t> arguments = good_arguments();
  arguments[0] = 5L;
  EXPECT_EQ(DISP_E_TYPEMISMATCH, call(object_, L"Initialize", arguments).hresult);
  EXPECT_TRUE(calls().all().empty());
}

TEST_F(LateBoundTest, ConvertibleArgumentsAreConverted) {
  initialize();
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  EXPECT_EQ(S_OK, call(object_, L"DoCommand", {_variant_t(std::to_wstring(menu_id).c_str()), _variant_t()}).hresult);
  EXPECT_EQ(S_OK, call(object_, L"DoCommand", {_variant_t(static_cast<double>(menu_id)), _variant_t()}).hresult);
  EXPECT_EQ(2, driver.dialogs());
}

TEST_F(LateBoundTest, NullObjectsArriveAsNull) {
  std::vector<_variant_t> arguments = good_arguments();
  arguments[0] = _variant_t(static_cast<IDispatch*>(nullptr));
  const LateBoundResult called = call(object_, L"Initialize", arguments);
  EXPECT_EQ(DISP_E_EXCEPTION, called.hresult);
  EXPECT_EQ(E_INVALIDARG, called.code);
  EXPECT_THAT(take_reports(), testing::ElementsAre("ASSERT pMainMenu != 0 | zdExpirationRulePlugin.cpp:70 Initialize"));
}

TEST_F(LateBoundTest, NamedArgumentsAreTaken) {
  initialize();
  _variant_t values[] = {_variant_t(menu_id), _variant_t(L"ignored")};
  DISPID names[] = {0, 1};
  DISPPARAMS parameters = {values, names, 2, 2};
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  EXPECT_EQ(S_OK,
            object_->Invoke(3, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr, nullptr, nullptr));
  EXPECT_EQ(1, driver.dialogs());
}

TEST_F(LateBoundTest, UnknownMemberOrKindOfCallIsRefused) {
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke(object_, 5).hresult);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke(object_, DISPID_VALUE).hresult);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke(object_, 4, {}, DISPATCH_PROPERTYGET).hresult);
  EXPECT_EQ(DISP_E_MEMBERNOTFOUND, invoke(own_, 2).hresult);
}

TEST_F(LateBoundTest, NullArgumentsOfTheDispatchCallsAreRefused) {
  DISPID id = 0;
  std::wstring name = L"DoCommand";
  LPOLESTR names[] = {name.data()};
  EXPECT_EQ(E_INVALIDARG, object_->GetIDsOfNames(IID_NULL, nullptr, 1, LOCALE_NEUTRAL, &id));
  EXPECT_EQ(E_INVALIDARG, object_->GetIDsOfNames(IID_NULL, names, 1, LOCALE_NEUTRAL, nullptr));
  EXPECT_EQ(E_INVALIDARG,
            object_->Invoke(4, IID_NULL, LOCALE_NEUTRAL, DISPATCH_METHOD, nullptr, nullptr, nullptr, nullptr));
}

}  // namespace
}  // namespace module_test
