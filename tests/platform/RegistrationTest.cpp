#include <gtest/gtest.h>

#include <algorithm>

#include "FaultLoop.h"
#include "ImportProbe.h"
#include "ModulePath.h"
#include "PerUserTypeLibraries.h"
#include "Registration.h"
#include "RegistryTree.h"
#include "ScratchRoot.h"
#include "TestResources.h"
#include "ThrownBy.h"
#include "zdExpirationRules_h.h"

ZD_IMPORT_PROBE(LoadResource, LoadResourceProbe);
ZD_IMPORT_PROBE(GetModuleFileNameW, ModuleFileNameProbe);
ZD_IMPORT_PROBE(RegCreateKeyExW, CreateKeyProbe);
ZD_IMPORT_PROBE(RegSetValueExW, SetValueProbe);

namespace platform {
namespace {

using test_support::create_volatile_key;
using test_support::registry_key_exists;
using test_support::registry_text;
using test_support::registry_tree;
using test_support::RegistryTree;
using test_support::thrown_by;
using test_support::write_registry_text;

const Replacements replacements = {{L"NAME", L"Sample Object"}, {L"ID", L"{1}"}, {L"PATH", L"C:\\a b\\it's %ID%.dll"}};

const RegistryTree sample_tree = {
    {L"Sample.Object\\", L""},
    {L"Sample.Object\\@", L"s:Sample Object"},
    {L"Sample.Object\\CLSID\\", L""},
    {L"Sample.Object\\CLSID\\@", L"s:{1}"},
    {L"Shared\\", L""},
    {L"Shared\\{1}\\", L""},
    {L"Shared\\{1}\\@", L"s:\u5230\u671f\u89c4\u5219"},
    {L"Shared\\{1}\\Flags", L"d:5"},
    {L"Shared\\{1}\\Programmable\\", L""},
    {L"Shared\\{1}\\Server\\", L""},
    {L"Shared\\{1}\\Server\\@", L"s:C:\\a b\\it's %ID%.dll"},
    {L"Shared\\{1}\\Server\\ThreadingModel", L"s:apartment"},
};
const RegistryTree empty_tree = {{L"Shared\\", L""}};

class RegistrationTest : public testing::Test {
 protected:
  static void run(int script = IDR_SAMPLE) {
    run_registration_script(script, replacements, RegistrationScope::machine);
  }
  static void unrun(int script = IDR_SAMPLE) {
    run_unregistration_script(script, replacements, RegistrationScope::machine);
  }
  static RegistryTree classes() { return registry_tree(HKEY_CLASSES_ROOT); }

  test_support::ScratchRoot scratch_{HKEY_CLASSES_ROOT};
};

TEST_F(RegistrationTest, ScriptIsWrittenValueByValue) {
  run();
  EXPECT_EQ(classes(), sample_tree);
}

TEST_F(RegistrationTest, RunningTwiceLeavesOneSetOfEntries) {
  run();
  run();
  EXPECT_EQ(classes(), sample_tree);
}

TEST_F(RegistrationTest, UnrunningLeavesTheKeysThatAreNeverRemoved) {
  run();
  unrun();
  EXPECT_EQ(classes(), empty_tree);
}

TEST_F(RegistrationTest, UnrunningTwiceOrWithoutRunningIsNoFailure) {
  EXPECT_NO_THROW(unrun());
  EXPECT_EQ(classes(), RegistryTree{});
  run();
  unrun();
  EXPECT_NO_THROW(unrun());
  EXPECT_EQ(classes(), empty_tree);
}

TEST_F(RegistrationTest, HalfMissingEntriesAreRemoved) {
  run();
  test_support::delete_registry_tree(HKEY_CLASSES_ROOT, L"Sample.Object\\CLSID");
  RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Shared\\{1}\\Server");
  unrun();
  EXPECT_EQ(classes(), empty_tree);
}

TEST_F(RegistrationTest, ForeignEntriesBelowOwnKeysSurvive) {
  run();
  write_registry_text(HKEY_CLASSES_ROOT, L"Sample.Object\\shell\\open", L"", L"foreign");
  write_registry_text(HKEY_CLASSES_ROOT, L"Sample.Object\\CLSID", L"Foreign", L"value");
  write_registry_text(HKEY_CLASSES_ROOT, L"Shared\\{2}", L"", L"foreign");
  unrun();
  const RegistryTree foreign = {
      {L"Sample.Object\\", L""},
      {L"Sample.Object\\CLSID\\", L""},
      {L"Sample.Object\\CLSID\\Foreign", L"s:value"},
      {L"Sample.Object\\shell\\", L""},
      {L"Sample.Object\\shell\\open\\", L""},
      {L"Sample.Object\\shell\\open\\@", L"s:foreign"},
      {L"Shared\\", L""},
      {L"Shared\\{2}\\", L""},
      {L"Shared\\{2}\\@", L"s:foreign"},
  };
  EXPECT_EQ(classes(), foreign);
}

TEST_F(RegistrationTest, ForceRemovedKeyIsDeletedWithItsContentWhenUnrun) {
  run();
  write_registry_text(HKEY_CLASSES_ROOT, L"Shared\\{1}\\Foreign\\Deep", L"x", L"foreign");
  unrun();
  EXPECT_EQ(classes(), empty_tree);
}

TEST_F(RegistrationTest, ForceRemovedKeyIsCleanedBeforeItIsWritten) {
  write_registry_text(HKEY_CLASSES_ROOT, L"Shared\\{1}\\Foreign\\Deep", L"x", L"foreign");
  write_registry_text(HKEY_CLASSES_ROOT, L"Shared\\{1}", L"Old", L"value");
  run();
  EXPECT_EQ(classes(), sample_tree);
}

TEST_F(RegistrationTest, OldTextsAreReplacedAndForeignValuesKept) {
  write_registry_text(HKEY_CLASSES_ROOT, L"Sample.Object", L"", L"old text that is longer than the new one");
  write_registry_text(HKEY_CLASSES_ROOT, L"Sample.Object", L"Foreign", L"kept");
  run();
  RegistryTree expected = sample_tree;
  expected[L"Sample.Object\\Foreign"] = L"s:kept";
  EXPECT_EQ(classes(), expected);
}

TEST_F(RegistrationTest, StopsAtTheFirstFailureAndReturnsIt) {
  create_volatile_key(HKEY_CLASSES_ROOT, L"Sample.Object");
  EXPECT_EQ(thrown_by([] { run(); }), test_support::volatile_parent_failure);
  EXPECT_FALSE(registry_key_exists(HKEY_CLASSES_ROOT, L"Shared"));
}

TEST_F(RegistrationTest, FailureOfALaterKeyKeepsTheEarlierOnes) {
  create_volatile_key(HKEY_CLASSES_ROOT, L"Shared");
  EXPECT_EQ(thrown_by([] { run(); }), test_support::volatile_parent_failure);
  EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, L"Sample.Object\\CLSID"), L"{1}");
}

TEST_F(RegistrationTest, FailureToOpenTheClassesOfEitherScopeIsReturned) {
  for (const RegistrationScope scope : {RegistrationScope::machine, RegistrationScope::user}) {
    for (const auto script : {run_registration_script, run_unregistration_script}) {
      CreateKeyProbe probe;
      probe.fail(1, ERROR_ACCESS_DENIED);
      EXPECT_EQ(thrown_by([&] { script(IDR_SAMPLE, replacements, scope); }), E_ACCESSDENIED);
      EXPECT_EQ(probe.calls(), 1);
    }
  }
}

TEST_F(RegistrationTest, FailureToWriteAnyValueEndsItAndIsReturned) {
  const std::size_t failed = test_support::fail_each_call([](std::size_t number) -> std::optional<std::string> {
    SetValueProbe probe;
    probe.fail(static_cast<int>(number), ERROR_ACCESS_DENIED);
    const HRESULT result = thrown_by([] { run(); });
    const auto calls = static_cast<std::size_t>(probe.calls());
    if (calls < number) {
      EXPECT_EQ(result, S_OK);
      return std::nullopt;
    }
    EXPECT_EQ(result, E_ACCESSDENIED);
    EXPECT_EQ(calls, number);
    return "writing a value";
  });
  const auto is_value = [](const auto& entry) { return !entry.first.ends_with(L'\\'); };
  EXPECT_EQ(failed, static_cast<std::size_t>(std::ranges::count_if(sample_tree, is_value)));
}

TEST_F(RegistrationTest, MissingScriptIsAFailure) {
  EXPECT_EQ(thrown_by([] { run(IDR_MISSING); }), HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND));
  EXPECT_EQ(thrown_by([] { unrun(IDR_MISSING); }), HRESULT_FROM_WIN32(ERROR_RESOURCE_NAME_NOT_FOUND));
}

TEST_F(RegistrationTest, FailureThatLeavesNoErrorIsAFailureAllTheSame) {
  for (const auto& [error, failure] :
       {std::pair<DWORD, HRESULT>{ERROR_SUCCESS, E_FAIL}, {ERROR_ACCESS_DENIED, E_ACCESSDENIED}}) {
    {
      LoadResourceProbe probe;
      probe.fail(0, nullptr, error);
      EXPECT_EQ(thrown_by([] { run(); }), failure);
    }
    {
      ModuleFileNameProbe probe;
      probe.fail(0, 0, error);
      EXPECT_EQ(thrown_by([] { register_type_library(RegistrationScope::machine); }), failure);
    }
    {
      test_support::PerUserTypeLibraries automation;
      automation.remove(error);
      EXPECT_EQ(thrown_by([] { register_type_library(RegistrationScope::user); }), failure);
    }
  }
  EXPECT_EQ(classes(), RegistryTree{});
}

TEST_F(RegistrationTest, BrokenScriptWritesNothing) {
  EXPECT_THROW(run(IDR_BROKEN), RegistryScriptError);
  EXPECT_EQ(classes(), RegistryTree{});
}

TEST_F(RegistrationTest, MissingReplacementWritesNothing) {
  EXPECT_THROW(run_registration_script(IDR_SAMPLE, {{L"NAME", L"x"}}, RegistrationScope::machine), RegistryScriptError);
  EXPECT_EQ(classes(), RegistryTree{});
}

TEST_F(RegistrationTest, UserScopeWritesBelowTheUsersClasses) {
  const test_support::ScratchRoot user(HKEY_CURRENT_USER);
  run_registration_script(IDR_SAMPLE, replacements, RegistrationScope::user);
  EXPECT_EQ(registry_tree(HKEY_CURRENT_USER, L"Software\\Classes"), sample_tree);
  EXPECT_EQ(classes(), RegistryTree{});
  run_unregistration_script(IDR_SAMPLE, replacements, RegistrationScope::user);
  EXPECT_EQ(registry_tree(HKEY_CURRENT_USER, L"Software\\Classes"), empty_tree);
}

TEST_F(RegistrationTest, TypeLibraryIsRegisteredUnderTheModulesPath) {
  const std::wstring key = L"TypeLib\\" + guid_text(LIBID_zdExpirationRules);
  register_type_library(RegistrationScope::machine);
  EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\1.0"), L"zdExpirationRules 1.0 Type Library");
  EXPECT_EQ(registry_text(HKEY_CLASSES_ROOT, key + L"\\1.0\\0\\win64"), base::module_file_name());
  unregister_type_library(RegistrationScope::machine);
  EXPECT_FALSE(registry_key_exists(HKEY_CLASSES_ROOT, key));
}

TEST_F(RegistrationTest, TypeLibraryThatIsNotRegisteredCannotBeUnregistered) {
  EXPECT_TRUE(FAILED(thrown_by([] { unregister_type_library(RegistrationScope::machine); })));
}

TEST_F(RegistrationTest, FailureToRegisterTheTypeLibraryIsThrown) {
  create_volatile_key(HKEY_CLASSES_ROOT, L"TypeLib");
  EXPECT_TRUE(FAILED(thrown_by([] { register_type_library(RegistrationScope::machine); })));
}

/// Every root that a registration could write to is a scratch area.
class UserTypeLibraryTest : public RegistrationTest {
 protected:
  ~UserTypeLibraryTest() override {
    EXPECT_EQ(classes(), RegistryTree{}) << "nothing is written for the machine";
    EXPECT_EQ(registry_tree(HKEY_LOCAL_MACHINE), RegistryTree{});
  }

  const std::wstring key_ = L"Software\\Classes\\TypeLib\\" + guid_text(LIBID_zdExpirationRules);
  test_support::ScratchRoot machine_{HKEY_LOCAL_MACHINE};
  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
  test_support::PerUserTypeLibraries automation_;
};

TEST_F(UserTypeLibraryTest, IsRegisteredBelowTheUsersClassesAndRemoved) {
  register_type_library(RegistrationScope::user);
  EXPECT_EQ(registry_text(HKEY_CURRENT_USER, key_ + L"\\1.0"), L"zdExpirationRules 1.0 Type Library");
  EXPECT_EQ(registry_text(HKEY_CURRENT_USER, key_ + L"\\1.0\\0\\win64"), base::module_file_name());
  unregister_type_library(RegistrationScope::user);
  EXPECT_FALSE(registry_key_exists(HKEY_CURRENT_USER, key_));
}

TEST_F(UserTypeLibraryTest, FailureIsThrown) {
  automation_.fail(E_ACCESSDENIED);
  EXPECT_EQ(thrown_by([] { register_type_library(RegistrationScope::user); }), E_ACCESSDENIED);
  EXPECT_EQ(thrown_by([] { unregister_type_library(RegistrationScope::user); }), E_ACCESSDENIED);
}

TEST(Registration, GuidIsWrittenInBracesAndUpperCase) {
  EXPECT_EQ(guid_text(LIBID_zdExpirationRules), L"{D3D753BE-7675-41E2-9CBB-735F6B1819E5}");
}

TEST(Registration, LocaleIsTheSystemsForTheScopeAndRestoredOnEveryPath) {
  constexpr LCID german = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);
  const LCID before = GetThreadLocale();
  SetThreadLocale(german);
  try {
    const ScopedSystemLocale scope;
    EXPECT_EQ(GetThreadLocale(), GetSystemDefaultLCID());
    throw 1;
  } catch (int) {
    EXPECT_EQ(GetThreadLocale(), german);
  }
  SetThreadLocale(before);
}

}  // namespace
}  // namespace platform
