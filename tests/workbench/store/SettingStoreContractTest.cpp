#include "StoreContract.h"

using namespace workbench;

namespace {

/// What every store does with symbol source settings.
class SettingStoreContract : public StoreContract {};

INSTANTIATE_TEST_SUITE_P(Stores, SettingStoreContract, every_store(), store_name);

TEST_P(SettingStoreContract, SettingsTravelUnchangedInTheirOrder) {
  std::vector<SymbolSourceSetting> settings;
  for (const std::wstring& name : awkward_names())
    settings.push_back(sample_setting(name, L"rule " + name.substr(0, 200)));
  settings.push_back({L"twice", L""});
  settings.push_back({L"twice", L"no such rule"});
  store_->replace_settings(settings);
  EXPECT_EQ(settings_of(*store_), settings);
  store_->replace_settings({});
  EXPECT_TRUE(store_->load_settings().empty());
}

TEST_P(SettingStoreContract, AddedSettingComesLastWithItsNumber) {
  store_->replace_content(sample_content());
  const std::vector<StoredSetting> before = store_->load_settings();
  const StoredSetting added = store_->add_setting(sample_setting(L"copper", L"no such rule"));
  EXPECT_EQ(added.setting, sample_setting(L"copper", L"no such rule"));
  EXPECT_GT(added.number, before.back().number);
  ASSERT_EQ(store_->load_settings().size(), before.size() + 1);
  EXPECT_EQ(store_->load_settings().back(), added);
}

TEST_P(SettingStoreContract, SettingIsRewrittenInItsPlaceAndItsRevisionRises) {
  store_->replace_content(sample_content());
  const StoredSetting first = store_->load_settings().front();
  const StoredSetting updated = store_->update_setting(first.number, sample_setting(L"lead", L"second"));
  EXPECT_EQ(updated, (StoredSetting{first.number, first.revision + 1, sample_setting(L"lead", L"second")}));
  EXPECT_EQ(store_->load_settings().front(), updated);
  EXPECT_EQ(store_->load_settings().size(), 3u);
}

TEST_P(SettingStoreContract, ChangeOfAnotherRevisionOfASettingIsRefused) {
  const StoredSetting read = store_->add_setting(sample_setting(L"copper", L""));
  const StoredSetting theirs = store_->update_setting(read.number, sample_setting(L"theirs", L""), read.revision);
  const auto updated =
      refusal([&] { store_->update_setting(read.number, sample_setting(L"mine", L""), read.revision); });
  ASSERT_TRUE(updated);
  EXPECT_EQ(updated->kind(), StoreErrorKind::setting_changed);
  EXPECT_EQ(updated->subject(), L"theirs");
  EXPECT_EQ(refusal_kind([&] { store_->delete_setting(read.number, read.revision); }), StoreErrorKind::setting_changed);
  EXPECT_EQ(store_->load_settings(), std::vector{theirs});
  store_->delete_setting(read.number, theirs.revision);
  EXPECT_TRUE(store_->load_settings().empty());
}

TEST_P(SettingStoreContract, SettingOfARenamedRuleIsAnotherThanItsReaderSaw) {
  store_->replace_content(sample_content());
  const StoredSetting read = store_->load_settings().front();
  store_->update_rule(store_->load_rules().front().number, sample_rule(L"renamed"));
  EXPECT_EQ(refusal_kind([&] { store_->update_setting(read.number, read.setting, read.revision); }),
            StoreErrorKind::setting_changed);
}

TEST_P(SettingStoreContract, UpdateOrDeleteOfAMissingSettingIsRefused) {
  EXPECT_EQ(refusal_kind([&] { store_->update_setting(7, sample_setting(L"copper", L"")); }),
            StoreErrorKind::setting_not_found);
  EXPECT_EQ(refusal_kind([&] { store_->delete_setting(7, 1); }), StoreErrorKind::setting_not_found);
  EXPECT_EQ(refusal([&] { store_->delete_setting(7); })->subject(), L"7");
}

TEST_P(SettingStoreContract, NumbersOfDeletedAndReplacedSettingsStayUnused) {
  const long deleted = store_->add_setting(sample_setting(L"one", L"")).number;
  store_->delete_setting(deleted);
  store_->replace_settings({sample_setting(L"two", L"")});
  const StoredSetting replaced = store_->load_settings().front();
  EXPECT_GT(replaced.number, deleted);
  EXPECT_EQ(replaced.revision, 1);
  store_->replace_settings({sample_setting(L"three", L"")});
  EXPECT_GT(store_->load_settings().front().number, replaced.number);
}

TEST_P(SettingStoreContract, SettingThatNoStoreMayKeepIsRefused) {
  const StoredSetting kept = store_->add_setting(sample_setting(L"kept", L""));
  const std::wstring overlong(longest_name + 1, L'x');
  const std::pair<const wchar_t*, SymbolSourceSetting> refused[] = {
      {L"SettingName", {L"", L""}},         {L"SettingName", {overlong, L""}},
      {L"RuleName", {L"x", overlong}},      {L"Calendar", {L"x", L"", L"a/b"}},
      {L"Calendar", {L"x", L"", overlong}}, {L"Calendar", {L"x", L"", L"lone \xD800"}},
      {L"Months", {L"x", L"", L"", L"A"}},  {L"Months", {L"x", L"", L"", L"ZH"}},
      {L"Months", {L"x", L"", L"", L"HH"}},
  };
  for (const auto& [field, refused_setting] : refused) {
    const SymbolSourceSetting& setting = refused_setting;
    const auto added = refusal([&] { store_->add_setting(setting); });
    const auto updated = refusal([&] { store_->update_setting(kept.number, setting); });
    ASSERT_TRUE(added && updated) << testing::PrintToString(setting.months);
    EXPECT_EQ(added->kind(), StoreErrorKind::invalid_value);
    EXPECT_EQ(updated->kind(), StoreErrorKind::invalid_value);
    EXPECT_EQ(added->subject(), field);
    EXPECT_EQ(refusal_kind([&] { store_->replace_settings({setting}); }), StoreErrorKind::invalid_value);
  }
  EXPECT_EQ(store_->load_settings(), std::vector{kept});
}

}  // namespace
