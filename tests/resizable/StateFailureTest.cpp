#include <gtest/gtest.h>

#include "ImportProbe.h"
#include "RegistryTree.h"
#include "StateFixture.h"

ZD_IMPORT_PROBE(RegOpenKeyExW, OpenKeyProbe);
ZD_IMPORT_PROBE(RegCreateKeyExW, CreateKeyProbe);
ZD_IMPORT_PROBE(RegCloseKey, CloseKeyProbe);
ZD_IMPORT_PROBE(RegSetValueExW, SetValueProbe);
ZD_IMPORT_PROBE(RegQueryValueExW, QueryValueProbe);
ZD_IMPORT_PROBE(GetWindowPlacement, GetPlacementProbe);

namespace resizable_test {
namespace {

/// The registry fails at one step or another; the dialog opens and closes all the same.
class RegistryFailure : public PlacementTest {
 protected:
  /// Keys that are opened are closed again, whatever failed.
  int keys_left_open() const { return opened - closed.calls(); }

  RegistryFailure() {
    open.replace([this](HKEY root, LPCWSTR name, DWORD options, REGSAM access, HKEY* key) {
      asked.push_back({L"open", options, access});
      return count(open.calls() == failing_open ? LSTATUS{ERROR_ACCESS_DENIED}
                                                : open.original(root, name, options, access, key));
    });
    create.replace([this](HKEY root, LPCWSTR name, DWORD reserved, LPWSTR key_class, DWORD options, REGSAM access,
                          const SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* disposition) {
      asked.push_back({key_class || security ? L"create with more" : L"create", options, access});
      return count(create_fails ? LSTATUS{ERROR_ACCESS_DENIED}
                                : create.original(root, name, reserved, key_class, options, access,
                                                  const_cast<SECURITY_ATTRIBUTES*>(security), key, disposition));
    });
  }

  /// How a key was asked for.
  struct Request {
    std::wstring call;
    DWORD options;
    REGSAM access;
    friend bool operator==(const Request&, const Request&) = default;
  };

  LSTATUS count(LSTATUS status) {
    if (status == ERROR_SUCCESS) ++opened;
    return status;
  }

  int failing_open = 0;
  bool create_fails = false;
  int opened = 0;
  std::vector<Request> asked;
  OpenKeyProbe open;
  CreateKeyProbe create;
  CloseKeyProbe closed;
};

TEST_F(RegistryFailure, NoneStoresThePlacementAndClosesItsKeys) {
  EXPECT_TRUE(store());
  EXPECT_EQ(create.calls(), 1) << "the key was missing";
  EXPECT_TRUE(store());
  EXPECT_EQ(create.calls(), 1) << "the key was there";
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, NoneAsksForTheRightsOfEachStep) {
  constexpr REGSAM write = 0x20006;
  constexpr REGSAM make = 0x2001F;
  constexpr REGSAM read = 0x20019;
  EXPECT_TRUE(store());
  EXPECT_EQ(asked, (std::vector<Request>{{L"open", 0, write}, {L"create", 0, make}, {L"open", 0, write}}));
  asked.clear();
  EXPECT_TRUE(store());
  EXPECT_EQ(asked, (std::vector<Request>{{L"open", 0, write}, {L"open", 0, write}}));
  asked.clear();
  EXPECT_TRUE(restore());
  EXPECT_EQ(asked, (std::vector<Request>{{L"open", 0, read}}));
}

TEST_F(RegistryFailure, AtCreatingTheKeyStoresNothing) {
  create_fails = true;
  EXPECT_FALSE(store());
  EXPECT_FALSE(test_support::registry_key_exists(HKEY_CURRENT_USER, key_name));
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, AtTheSecondOpeningStoresNothing) {
  failing_open = 2;
  EXPECT_FALSE(store());
  EXPECT_TRUE(stored_bytes().empty());
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, AtClosingTheFirstKeyStoresNothing) {
  closed.replace([this](HKEY key) {
    const LSTATUS status = closed.original(key);
    return closed.calls() == 1 ? LSTATUS{ERROR_INVALID_HANDLE} : status;
  });
  EXPECT_FALSE(store());
  EXPECT_TRUE(stored_bytes().empty());
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, AtReadingThePlacementStoresNothing) {
  GetPlacementProbe placement;
  placement.fail(0, FALSE);
  EXPECT_FALSE(store());
  EXPECT_TRUE(stored_bytes().empty());
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, AtWritingTheValueIsReturned) {
  SetValueProbe value;
  value.fail(0, ERROR_ACCESS_DENIED);
  EXPECT_FALSE(store());
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, AtReadingTheValueCountsAsAFirstOpening) {
  write(placement_at({150, 160, 550, 460}));
  QueryValueProbe value;
  value.fail(0, ERROR_ACCESS_DENIED);
  EXPECT_EQ(restore(), FALSE);
  EXPECT_EQ(rect(), (RECT{100, 100, 400, 300 - caption}));
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, AtOpeningForReadingCountsAsAFirstOpening) {
  write(placement_at({150, 160, 550, 460}));
  failing_open = 1;
  EXPECT_EQ(restore(), FALSE);
  EXPECT_EQ(rect(), (RECT{100, 100, 400, 300 - caption}));
  EXPECT_EQ(keys_left_open(), 0);
}

TEST_F(RegistryFailure, AtEveryStepOpensTheDialogAsLargeAsItIs) {
  create_fails = true;
  EXPECT_EQ(restore(), FALSE);
  EXPECT_EQ(rect(), (RECT{100, 100, 400, 300})) << "what is not stored is not lowered";
  EXPECT_TRUE(IsWindowVisible(owned.get()));
}

TEST_F(RegistryFailure, UnderAKeyThatKeepsNothingIsSilent) {
  test_support::create_volatile_key(HKEY_CURRENT_USER, path);
  EXPECT_FALSE(store());
  EXPECT_EQ(restore(), FALSE);
  EXPECT_EQ(keys_left_open(), 0);
}

class OddPlacementKeys : public PlacementTest {};

TEST_F(OddPlacementKeys, AMissingTextReadsAsEmpty) {
  EXPECT_EQ(window.RestorePlacement(HKEY_CURRENT_USER, nullptr, nullptr, nullptr, FALSE), FALSE);
  EXPECT_TRUE(IsWindowVisible(owned.get()));
  window.StorePlacement(FALSE);
}

TEST_F(OddPlacementKeys, AnEmptySettingsPathIsNoReasonNotToOpen) {
  EXPECT_EQ(window.RestorePlacement(HKEY_CURRENT_USER, L"", subkey, value_name, FALSE), FALSE);
  EXPECT_TRUE(IsWindowVisible(owned.get()));
}

TEST_F(OddPlacementKeys, AMissingRootIsNoReasonNotToOpen) {
  EXPECT_EQ(window.RestorePlacement(nullptr, path, subkey, value_name, FALSE), FALSE);
  EXPECT_TRUE(IsWindowVisible(owned.get()));
  EXPECT_FALSE(window.StorePlacement(FALSE));
}

TEST_F(OddPlacementKeys, NamesKeepEveryCharacter) {
  constexpr wchar_t company[] = L"SOFTWARE\\\u516C\u53F8 & Co. \"A/B\"\\\u4EA7\u54C1 1.0%";
  EXPECT_TRUE(window.StorePlacement(HKEY_CURRENT_USER, company, subkey, value_name, FALSE, nullptr));
  EXPECT_TRUE(test_support::registry_key_exists(HKEY_CURRENT_USER, std::wstring(company) + L"\\" + subkey));
}

}  // namespace
}  // namespace resizable_test
