#include <gmock/gmock.h>

#include "CzdExpirationRulesModule.h"
#include "ExpectedReports.h"
#include "ImportProbe.h"
#include "PerUserTypeLibraries.h"
#include "RegistryTree.h"
#include "ScratchRoot.h"

ZD_IMPORT_PROBE(RegCreateKeyExW, KeyProbe);
ZD_IMPORT_PROBE(RegSetValueExW, ValueProbe);

namespace zd_expiration_rule_plugin {
namespace {

using platform::RegistrationScope;
using test_support::differences;
using test_support::registry_key_exists;
using test_support::registry_tree;
using test_support::RegistryTree;
using testing::IsEmpty;

const std::wstring users_classes = L"Software\\Classes";
const std::wstring class_key = users_classes + L"\\CLSID\\{9BE3B2E9-3553-4F02-A7CE-5532F138D18A}";
const std::wstring library_key = users_classes + L"\\TypeLib\\{D3D753BE-7675-41E2-9CBB-735F6B1819E5}";
const std::wstring interface_key = users_classes + L"\\Interface\\{E53853CE-AA82-416D-8B6B-F70D8BD598C2}";

/// A module in whose process every root that it could write to is a scratch area.
class UserRegistration : public testing::Test {
 protected:
  UserRegistration() { module_.scope = RegistrationScope::user; }
  ~UserRegistration() override {
    EXPECT_EQ(RegistryTree{}, registry_tree(HKEY_CLASSES_ROOT)) << "nothing is left for the machine";
    EXPECT_EQ(RegistryTree{}, registry_tree(HKEY_LOCAL_MACHINE));
  }

  test_support::ScratchRoot classes_{HKEY_CLASSES_ROOT};
  test_support::ScratchRoot machine_{HKEY_LOCAL_MACHINE};
  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
  test_support::PerUserTypeLibraries automation_;
  CzdExpirationRulesModule module_;
};

TEST_F(UserRegistration, WritesBelowTheUsersClassesWhatTheMachinesWritesBelowTheRoot) {
  CzdExpirationRulesModule machines;
  EXPECT_EQ(S_OK, machines.register_server());
  const RegistryTree expected = registry_tree(HKEY_CLASSES_ROOT);
  test_support::delete_registry_tree(HKEY_CLASSES_ROOT, L"");

  EXPECT_EQ(S_OK, module_.register_server());
  EXPECT_THAT(differences(expected, registry_tree(HKEY_CURRENT_USER, users_classes)), IsEmpty());
  for (const std::wstring& key : {class_key, library_key, interface_key}) {
    EXPECT_TRUE(registry_key_exists(HKEY_CURRENT_USER, key)) << testing::PrintToString(key);
  }
}

TEST_F(UserRegistration, WritesTheClassKeyInTheOrderOfItsScript) {
  std::vector<std::wstring> written;
  KeyProbe keys;
  keys.replace([&](HKEY parent, LPCWSTR name, DWORD reserved, LPWSTR type, DWORD options, REGSAM access,
                   LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition) {
    written.emplace_back(name);
    return keys.original(parent, name, reserved, type, options, access, security, key, disposition);
  });
  ValueProbe values;
  values.replace([&](HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    written.push_back(std::wstring(L"=") + name);
    return values.original(key, name, reserved, type, data, size);
  });
  EXPECT_EQ(S_OK, module_.register_server());
  const auto class_id = std::find(written.begin(), written.end(), class_key.substr(class_key.rfind(L'\\') + 1));
  ASSERT_GT(written.end() - class_id, 13);
  EXPECT_THAT(std::vector<std::wstring>(class_id + 1, class_id + 13),
              testing::ElementsAre(L"=", L"ProgID", L"=", L"VersionIndependentProgID", L"=", L"Programmable",
                                   L"InprocServer32", L"=", L"=ThreadingModel", L"=AppID", L"TypeLib", L"="));
}

TEST_F(UserRegistration, IsRemovedButForTheSharedKeys) {
  EXPECT_EQ(S_OK, module_.register_server());
  EXPECT_EQ(S_OK, module_.unregister_server());
  for (const std::wstring& key : {class_key, library_key, interface_key}) {
    EXPECT_FALSE(registry_key_exists(HKEY_CURRENT_USER, key)) << testing::PrintToString(key);
  }
  EXPECT_TRUE(registry_key_exists(HKEY_CURRENT_USER, users_classes + L"\\AppID"));
}

TEST_F(UserRegistration, ReturnsTheFailureOfTheTypeLibraryAndKeepsTheClass) {
  automation_.fail(E_ACCESSDENIED);
  EXPECT_EQ(E_ACCESSDENIED, module_.register_server());
  EXPECT_TRUE(registry_key_exists(HKEY_CURRENT_USER, class_key));
  EXPECT_EQ(E_ACCESSDENIED, module_.unregister_server()) << "the type library comes first";
  EXPECT_TRUE(registry_key_exists(HKEY_CURRENT_USER, class_key));
}

}  // namespace
}  // namespace zd_expiration_rule_plugin
