#include <gmock/gmock.h>

#include "ExpectedReports.h"
#include "GuidText.h"
#include "Module.h"
#include "ModuleCopy.h"
#include "RegisteredTree.h"
#include "RegistrySandbox.h"

namespace module_test {
namespace {

using test_support::create_volatile_key;
using test_support::differences;
using test_support::registry_key_exists;
using test_support::registry_text;
using test_support::registry_tree;
using test_support::RegistryTree;
using test_support::volatile_parent_failure;
using test_support::write_registry_text;
using testing::IsEmpty;

const std::wstring class_key = L"CLSID\\{9BE3B2E9-3553-4F02-A7CE-5532F138D18A}";
const std::wstring library_key = L"TypeLib\\{D3D753BE-7675-41E2-9CBB-735F6B1819E5}";
constexpr LCID german = MAKELCID(MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN), SORT_DEFAULT);

/// In a registry of its own, on a thread whose locale is not the system's.
class RegistrationTest : public testing::Test {
 protected:
  RegistrationTest() : locale_(GetThreadLocale()) { SetThreadLocale(german); }
  ~RegistrationTest() override { SetThreadLocale(locale_); }

  void TearDown() override { EXPECT_EQ(german, GetThreadLocale()) << "the locale is restored on every path"; }

  static RegistryTree classes() { return registry_tree(HKEY_CLASSES_ROOT); }

  /// The entries of the module at `path`, and beside them those of its type library and nothing else.
  static void expect_registered(const std::wstring& path) {
    EXPECT_THAT(differences(registered_tree(path), without_type_library(classes())), IsEmpty());
    EXPECT_EQ(path, registry_text(HKEY_CLASSES_ROOT, library_key + L"\\1.0\\0\\win64"));
  }

  test_support::RegistrySandbox sandbox_;
  Module module_;

 private:
  LCID locale_;
};

TEST_F(RegistrationTest, WritesTheEntriesOfTheModuleValueByValue) {
  EXPECT_EQ(S_OK, module_.register_server());
  expect_registered(built_module_path());
}

TEST_F(RegistrationTest, RegistersTheTypeLibraryInTheModule) {
  EXPECT_EQ(S_OK, module_.register_server());
  EXPECT_EQ(L"zdExpirationRules 1.0 Type Library", registry_text(HKEY_CLASSES_ROOT, library_key + L"\\1.0"));
  for (const wchar_t* name : {L"IkvPlugin", L"IzdExpirationRulesPlugin"}) {
    const GUID& id = std::wstring(name) == L"IkvPlugin" ? __uuidof(IkvPlugin) : __uuidof(IzdExpirationRulesPlugin);
    const std::wstring key = L"Interface\\" + test_support::guid_text(id);
    EXPECT_EQ(name, registry_text(HKEY_CLASSES_ROOT, key));
    EXPECT_EQ(library_key.substr(8), registry_text(HKEY_CLASSES_ROOT, key + L"\\TypeLib"));
  }
}

TEST_F(RegistrationTest, WritesNothingBelowTheUser) {
  EXPECT_EQ(S_OK, module_.register_server());
  EXPECT_EQ(RegistryTree{}, registry_tree(HKEY_CURRENT_USER));
}

TEST_F(RegistrationTest, RegisteringTwiceLeavesOneSetOfEntries) {
  EXPECT_EQ(S_OK, module_.register_server());
  const RegistryTree once = classes();
  EXPECT_EQ(S_OK, module_.register_server());
  EXPECT_THAT(differences(once, classes()), IsEmpty());
}

TEST_F(RegistrationTest, UnregisteringRemovesEverythingButTheSharedKeys) {
  EXPECT_EQ(S_OK, module_.register_server());
  EXPECT_EQ(S_OK, module_.unregister_server());
  const RegistryTree shared = {{L"AppID\\", L""}, {L"CLSID\\", L""}};
  EXPECT_EQ(shared, without_type_library(classes()));
  EXPECT_FALSE(registry_key_exists(HKEY_CLASSES_ROOT, library_key));
}

TEST_F(RegistrationTest, EntriesOfOthersSurvive) {
  write_registry_text(HKEY_CLASSES_ROOT, L"AppID\\{other}", L"", L"other");
  write_registry_text(HKEY_CLASSES_ROOT, L"CLSID\\{other}\\InprocServer32", L"", L"other.dll");
  const RegistryTree before = classes();
  EXPECT_EQ(S_OK, module_.register_server());
  EXPECT_EQ(S_OK, module_.unregister_server());
  EXPECT_THAT(differences(before, without_type_library(classes())), IsEmpty());
}

TEST_F(RegistrationTest, ForeignKeysBelowTheProgIdSurviveUnregistering) {
  EXPECT_EQ(S_OK, module_.register_server());
  write_registry_text(HKEY_CLASSES_ROOT, L"zdExpirationRule.ExpirationRule\\shell\\open", L"", L"foreign");
  EXPECT_EQ(S_OK, module_.unregister_server());
  EXPECT_EQ(L"foreign", registry_text(HKEY_CLASSES_ROOT, L"zdExpirationRule.ExpirationRule\\shell\\open"));
  EXPECT_FALSE(registry_key_exists(HKEY_CLASSES_ROOT, L"zdExpirationRule.ExpirationRule\\CLSID"));
}

TEST_F(RegistrationTest, ClassKeyIsCleanedBeforeItIsWrittenAndRemovedWithItsContent) {
  write_registry_text(HKEY_CLASSES_ROOT, class_key + L"\\Foreign\\Deep", L"x", L"old");
  write_registry_text(HKEY_CLASSES_ROOT, class_key + L"\\LocalServer32", L"", L"old.exe");
  EXPECT_EQ(S_OK, module_.register_server());
  expect_registered(built_module_path());
  write_registry_text(HKEY_CLASSES_ROOT, class_key + L"\\Foreign", L"x", L"new");
  EXPECT_EQ(S_OK, module_.unregister_server());
  EXPECT_FALSE(registry_key_exists(HKEY_CLASSES_ROOT, class_key));
}

TEST_F(RegistrationTest, PathOfAnyKindIsWrittenAsItIs) {
  for (const wchar_t* folder : odd_folders) {
    const ModuleCopy copy(folder);
    const Module module(copy.path());
    ASSERT_EQ(S_OK, module.register_server());
    expect_registered(copy.path());
    EXPECT_EQ(S_OK, module.unregister_server());
  }
}

TEST_F(RegistrationTest, RegisteringFromANewPathReplacesTheOldOne) {
  const ModuleCopy copy(L"zd moved");
  EXPECT_EQ(S_OK, Module(copy.path()).register_server());
  EXPECT_EQ(S_OK, module_.register_server());
  expect_registered(built_module_path());
}

// Failing steps. A key in which nothing lasting can be created stops the step that needs it.

TEST_F(RegistrationTest, FailureOfTheFirstStepIsReturnedAndNothingElseIsDone) {
  create_volatile_key(HKEY_CLASSES_ROOT, L"AppID");
  const RegistryTree before = classes();
  EXPECT_EQ(volatile_parent_failure, module_.register_server());
  EXPECT_EQ(before, classes());
  EXPECT_THAT(test_support::take_reports(), IsEmpty()) << "whoever registers a module may have no user to ask";
}

TEST_F(RegistrationTest, FailureOfTheClassStepIsReturnedAndTheTypeLibraryIsNotRegistered) {
  for (const wchar_t* key : {L"zdExpirationRule.ExpirationRule.1", L"zdExpirationRule.ExpirationRule", L"CLSID"}) {
    test_support::delete_registry_tree(HKEY_CLASSES_ROOT, L"");
    create_volatile_key(HKEY_CLASSES_ROOT, key);
    EXPECT_EQ(volatile_parent_failure, module_.register_server());
    EXPECT_TRUE(registry_key_exists(HKEY_CLASSES_ROOT, L"AppID\\zdExpirationRules.DLL")) << "the step before is kept";
    EXPECT_FALSE(registry_key_exists(HKEY_CLASSES_ROOT, L"TypeLib"));
  }
}

/// The automation library's own result.
HRESULT register_type_library() {
  std::wstring path = built_module_path();
  base::ComPtr<ITypeLib> library;
  EXPECT_EQ(S_OK, LoadTypeLibEx(path.c_str(), REGKIND_NONE, &library));
  return RegisterTypeLib(library, path.data(), nullptr);
}

TEST_F(RegistrationTest, FailureOfTheTypeLibraryStepIsReturnedAsItIs) {
  create_volatile_key(HKEY_CLASSES_ROOT, L"TypeLib");
  const HRESULT failure = register_type_library();
  ASSERT_TRUE(FAILED(failure));
  EXPECT_EQ(failure, module_.register_server());
  EXPECT_THAT(differences(registered_tree(built_module_path()), without_type_library(classes())), IsEmpty())
      << "the steps before are kept";
}

TEST_F(RegistrationTest, UnregisteringWhatIsNotRegisteredFailsAtTheTypeLibraryAndStops) {
  EXPECT_EQ(S_OK, module_.register_server());
  ASSERT_EQ(S_OK, UnRegisterTypeLib(LIBID_zdExpirationRules, 1, 0, LOCALE_NEUTRAL, SYS_WIN64));
  const HRESULT failure = UnRegisterTypeLib(LIBID_zdExpirationRules, 1, 0, LOCALE_NEUTRAL, SYS_WIN64);
  ASSERT_TRUE(FAILED(failure));
  EXPECT_EQ(failure, module_.unregister_server());
  EXPECT_THAT(differences(registered_tree(built_module_path()), without_type_library(classes())), IsEmpty());
}

}  // namespace
}  // namespace module_test
