#include <gtest/gtest.h>

#include "FailingRuleStore.h"
#include "MemoryRuleStore.h"
#include "ShippedCalendars.h"
#include "SqliteRuleStore.h"
#include "StoreSamples.h"
#include "TemporaryFolder.h"

using namespace workbench;
using test_support::TemporaryFolder;

namespace {

struct Implementation {
  const char* name;
  std::shared_ptr<RuleStore> (*make)(const TemporaryFolder& folder);
};

void PrintTo(const Implementation& implementation, std::ostream* stream) { *stream << implementation.name; }

std::shared_ptr<RuleStore> make_sqlite(const TemporaryFolder& folder) {
  return open_sqlite_store(folder.path() / L"rules.db");
}
std::shared_ptr<RuleStore> make_memory(const TemporaryFolder&) { return std::make_shared<MemoryRuleStore>(); }
std::shared_ptr<RuleStore> make_failing(const TemporaryFolder&) {
  return std::make_shared<FailingRuleStore>(std::make_shared<MemoryRuleStore>(), 0);
}

/// What every store does, whatever it keeps its rules in.
class RuleStoreContract : public testing::TestWithParam<Implementation> {
 protected:
  TemporaryFolder folder_;
  std::shared_ptr<RuleStore> store_ = GetParam().make(folder_);
};

INSTANTIATE_TEST_SUITE_P(Stores, RuleStoreContract,
                         testing::Values(Implementation{"Sqlite", make_sqlite}, Implementation{"Memory", make_memory},
                                         Implementation{"Failing", make_failing}),
                         [](const auto& test) { return test.param.name; });

TEST_P(RuleStoreContract, NewStoreIsEmpty) { EXPECT_EQ(holdings(*store_), StoreSnapshot()); }

TEST_P(RuleStoreContract, AddedRuleComesBackWithItsNumber) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  EXPECT_GE(added.number, 1);
  EXPECT_EQ(added.rule, sample_rule(L"gold"));
  EXPECT_EQ(store_->try_load_rule(added.number), added);
  EXPECT_EQ(store_->load_rules(), std::vector{added});
}

TEST_P(RuleStoreContract, RulesComeByAscendingNumber) {
  const long last = store_->add_rule(sample_rule(L"z")).number;
  const long next = store_->add_rule(sample_rule(L"a")).number;
  EXPECT_GT(next, last);
  ASSERT_EQ(store_->load_rules().size(), 2u);
  EXPECT_EQ(store_->load_rules()[0].number, last);
  EXPECT_EQ(store_->load_rules()[1].number, next);
}

TEST_P(RuleStoreContract, UnknownNumberFindsNothing) {
  EXPECT_EQ(store_->try_load_rule(1), std::nullopt);
  EXPECT_EQ(store_->try_load_rule(0), std::nullopt);
  EXPECT_EQ(store_->try_load_rule(-1), std::nullopt);
}

TEST_P(RuleStoreContract, UpdateRewritesEveryFieldAndRaisesTheRevision) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  const Rule plain{.name = L"silver"};
  const StoredRule updated = store_->update_rule(added.number, plain);
  EXPECT_EQ(updated.number, added.number);
  EXPECT_EQ(updated.rule, plain);
  EXPECT_GT(updated.revision, added.revision);
  EXPECT_EQ(store_->load_rules(), std::vector{updated});
}

TEST_P(RuleStoreContract, UpdateMayKeepTheName) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  Rule changed = added.rule;
  changed.roll_offset = 5;
  EXPECT_EQ(store_->update_rule(added.number, changed).rule, changed);
}

TEST_P(RuleStoreContract, UpdateOfAnOtherRevisionIsRefused) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  const StoredRule theirs = store_->update_rule(added.number, sample_rule(L"theirs"), added.revision);
  EXPECT_EQ(refusal_kind([&] { store_->update_rule(added.number, sample_rule(L"mine"), added.revision); }),
            StoreErrorKind::changed);
  EXPECT_EQ(store_->load_rules(), std::vector{theirs});
}

TEST_P(RuleStoreContract, DeleteOfAnotherRevisionIsRefused) {
  const StoredRule added = store_->add_rule(sample_rule(L"gold"));
  const StoredRule theirs = store_->update_rule(added.number, sample_rule(L"theirs"));
  EXPECT_EQ(refusal_kind([&] { store_->delete_rule(added.number, added.revision); }), StoreErrorKind::changed);
  EXPECT_EQ(store_->load_rules(), std::vector{theirs});
  store_->delete_rule(added.number, theirs.revision);
  EXPECT_TRUE(store_->load_rules().empty());
}

TEST_P(RuleStoreContract, UpdateOrDeleteOfAMissingRuleIsRefused) {
  EXPECT_EQ(refusal_kind([&] { store_->update_rule(7, sample_rule(L"gold")); }), StoreErrorKind::not_found);
  EXPECT_EQ(refusal_kind([&] { store_->delete_rule(7); }), StoreErrorKind::not_found);
  EXPECT_EQ(refusal([&] { store_->delete_rule(7); })->subject(), L"7");
}

TEST_P(RuleStoreContract, DeletedRuleIsGoneAndItsNumberStaysUnused) {
  const StoredRule kept = store_->add_rule(sample_rule(L"kept"));
  const StoredRule deleted = store_->add_rule(sample_rule(L"deleted"));
  store_->delete_rule(deleted.number);
  EXPECT_EQ(store_->load_rules(), std::vector{kept});
  EXPECT_GT(store_->add_rule(sample_rule(L"deleted")).number, deleted.number);
}

TEST_P(RuleStoreContract, DuplicateNameIsRefusedAndNamesItself) {
  store_->add_rule(sample_rule(L"gold"));
  const StoredRule silver = store_->add_rule(sample_rule(L"silver"));
  const StoreSnapshot before = holdings(*store_);
  const auto added = refusal([&] { store_->add_rule(sample_rule(L"gold")); });
  const auto updated = refusal([&] { store_->update_rule(silver.number, sample_rule(L"gold")); });
  ASSERT_TRUE(added && updated);
  EXPECT_EQ(added->kind(), StoreErrorKind::duplicate_name);
  EXPECT_EQ(updated->kind(), StoreErrorKind::duplicate_name);
  EXPECT_EQ(added->subject(), L"gold");
  EXPECT_EQ(holdings(*store_), before);
}

TEST_P(RuleStoreContract, NamesTravelUnchangedAndAreToldApartByTheirCodeUnits) {
  for (const std::wstring& name : awkward_names()) {
    const StoredRule added = store_->add_rule(sample_rule(name));
    EXPECT_EQ(store_->try_load_rule(added.number)->rule.name, name);
    EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(name)); }), StoreErrorKind::duplicate_name);
  }
  EXPECT_EQ(store_->load_rules().size(), awkward_names().size());
}

TEST_P(RuleStoreContract, SettingsTravelUnchangedInTheirOrder) {
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

TEST_P(RuleStoreContract, AddedSettingComesLastWithItsNumber) {
  store_->replace_content(sample_content());
  const std::vector<StoredSetting> before = store_->load_settings();
  const StoredSetting added = store_->add_setting(sample_setting(L"copper", L"no such rule"));
  EXPECT_EQ(added.setting, sample_setting(L"copper", L"no such rule"));
  EXPECT_GT(added.number, before.back().number);
  ASSERT_EQ(store_->load_settings().size(), before.size() + 1);
  EXPECT_EQ(store_->load_settings().back(), added);
}

TEST_P(RuleStoreContract, SettingIsRewrittenInItsPlaceAndItsRevisionRises) {
  store_->replace_content(sample_content());
  const StoredSetting first = store_->load_settings().front();
  const StoredSetting updated = store_->update_setting(first.number, sample_setting(L"lead", L"second"));
  EXPECT_EQ(updated, (StoredSetting{first.number, first.revision + 1, sample_setting(L"lead", L"second")}));
  EXPECT_EQ(store_->load_settings().front(), updated);
  EXPECT_EQ(store_->load_settings().size(), 3u);
}

TEST_P(RuleStoreContract, ChangeOfAnotherRevisionOfASettingIsRefused) {
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

TEST_P(RuleStoreContract, SettingOfARenamedRuleIsAnotherThanItsReaderSaw) {
  store_->replace_content(sample_content());
  const StoredSetting read = store_->load_settings().front();
  store_->update_rule(store_->load_rules().front().number, sample_rule(L"renamed"));
  EXPECT_EQ(refusal_kind([&] { store_->update_setting(read.number, read.setting, read.revision); }),
            StoreErrorKind::setting_changed);
}

TEST_P(RuleStoreContract, UpdateOrDeleteOfAMissingSettingIsRefused) {
  EXPECT_EQ(refusal_kind([&] { store_->update_setting(7, sample_setting(L"copper", L"")); }),
            StoreErrorKind::setting_not_found);
  EXPECT_EQ(refusal_kind([&] { store_->delete_setting(7, 1); }), StoreErrorKind::setting_not_found);
  EXPECT_EQ(refusal([&] { store_->delete_setting(7); })->subject(), L"7");
}

TEST_P(RuleStoreContract, NumbersOfDeletedAndReplacedSettingsStayUnused) {
  const long deleted = store_->add_setting(sample_setting(L"one", L"")).number;
  store_->delete_setting(deleted);
  store_->replace_settings({sample_setting(L"two", L"")});
  const StoredSetting replaced = store_->load_settings().front();
  EXPECT_GT(replaced.number, deleted);
  EXPECT_EQ(replaced.revision, 1);
  store_->replace_settings({sample_setting(L"three", L"")});
  EXPECT_GT(store_->load_settings().front().number, replaced.number);
}

TEST_P(RuleStoreContract, SettingThatNoStoreMayKeepIsRefused) {
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

TEST_P(RuleStoreContract, CalendarsComeByNameAndEachIsReplacedWhole) {
  const StoredCalendar other = sample_calendar("交易所 2");
  store_->replace_calendars({other, sample_calendar("exchange")});
  EXPECT_EQ(store_->load_calendars(), (std::vector{sample_calendar("exchange"), other}));
  StoredCalendar changed = sample_calendar("exchange");
  changed.calendar.title.clear();
  changed.calendar.weekend = 0;
  changed.calendar.closed.pop_back();
  changed.calendar.closed.front().reason = "another";
  changed.shipped_version = 8;
  store_->replace_calendars({changed});
  EXPECT_EQ(store_->load_calendars(), (std::vector{changed, other}));
  changed.calendar.closed.clear();
  store_->replace_calendars({changed});
  EXPECT_EQ(store_->load_calendars(), (std::vector{changed, other}));
}

TEST_P(RuleStoreContract, ShippedCalendarsComeBackUnchanged) {
  std::vector<StoredCalendar> shipped;
  for (const schedule::Calendar& calendar : schedule::shipped_calendars()) shipped.push_back({calendar, 1});
  store_->replace_calendars(shipped);
  EXPECT_EQ(store_->load_calendars(), shipped);
}

TEST_P(RuleStoreContract, CalendarThatNoFileCouldDescribeIsRefusedWithAllOthers) {
  using std::chrono::days;
  store_->replace_calendars({sample_calendar("exchange")});
  const auto refused = [&](auto change) {
    StoredCalendar invalid = sample_calendar("exchange");
    change(invalid.calendar);
    const auto error = refusal([&] { store_->replace_calendars({sample_calendar("new"), invalid}); });
    EXPECT_EQ(store_->load_calendars(), std::vector{sample_calendar("exchange")});
    return error && error->kind() == StoreErrorKind::invalid_value ? error->subject() : std::wstring();
  };
  using schedule::Calendar;
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.name = "a.csv"; }), L"name");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.title = "\xFF"; }), L"title");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.covers = "\xFF"; }), L"covers");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.source = "\xFF"; }), L"source");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.from = schedule::Day(days(-100'000)); }), L"from");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.to = schedule::Day(days(100'000)); }), L"to");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.to = calendar.from - days(1); }), L"to");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.weekend = schedule::every_weekday; }), L"weekend");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1] = calendar.closed[0]; }), L"date");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[0].day = calendar.from - days(1); }), L"date");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1].day = calendar.to + days(1); }), L"date");
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1].day += days(4); }), L"date") << "it is a Friday";
  EXPECT_EQ(refused([](Calendar& calendar) { calendar.closed[1].reason = "\xFF"; }), L"reason");
}

TEST_P(RuleStoreContract, EveryNumberKeepsToItsRange) {
  const StoredRule kept = store_->add_rule(sample_rule(L"kept"));
  for (const RuleColumn& column : rule_columns) {
    for (const long value : {column.least, column.greatest}) {
      Rule rule = kept.rule;
      rule.*column.value = value;
      EXPECT_EQ(store_->update_rule(kept.number, rule).rule.*column.value, value) << column.name;
    }
    const StoreSnapshot before = holdings(*store_);
    for (const long value : {column.least - 1, column.greatest + 1, LONG_MIN, LONG_MAX}) {
      Rule rule = sample_rule(L"refused");
      rule.*column.value = value;
      const auto added = refusal([&] { store_->add_rule(rule); });
      const auto updated = refusal([&] { store_->update_rule(kept.number, rule); });
      ASSERT_TRUE(added && updated) << column.name << ' ' << value;
      EXPECT_EQ(added->kind(), StoreErrorKind::invalid_value);
      EXPECT_EQ(updated->kind(), StoreErrorKind::invalid_value);
      EXPECT_EQ(added->subject(), std::wstring(column.name, column.name + strlen(column.name)));
    }
    EXPECT_EQ(holdings(*store_), before);
  }
}

TEST_P(RuleStoreContract, EmptyAndOverlongNamesAreRefused) {
  const std::wstring overlong(longest_name + 1, L'x');
  EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(L"")); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->add_rule(sample_rule(overlong)); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings({{L"", L"rule"}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings({{overlong, L""}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings({{L"setting", overlong}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(holdings(*store_), StoreSnapshot());
}

TEST_P(RuleStoreContract, SettingsFollowTheNewNameOfTheirRule) {
  store_->replace_content(sample_content());
  const StoredRule first = store_->load_rules().front();
  const std::vector<StoredSetting> before = store_->load_settings();
  store_->update_rule(first.number, sample_rule(L"renamed"));
  EXPECT_EQ(store_->load_settings(),
            (std::vector<StoredSetting>{{before[0].number, 2, {L"copper", L"renamed"}},
                                        before[1],
                                        {before[2].number, 2, sample_setting(L"zinc", L"renamed")}}));
  store_->update_rule(first.number, {.name = L"renamed"});
  EXPECT_EQ(store_->load_settings()[0].revision, 2) << "the name stayed";
}

TEST_P(RuleStoreContract, RuleInUseIsNotDeleted) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = holdings(*store_);
  const auto refused = refusal([&] { store_->delete_rule(before.rules.front().number); });
  ASSERT_TRUE(refused);
  EXPECT_EQ(refused->kind(), StoreErrorKind::in_use);
  EXPECT_EQ(refused->subject(), L"first");
  EXPECT_EQ(holdings(*store_), before);
  store_->replace_settings({});
  store_->delete_rule(before.rules.front().number);
  EXPECT_EQ(store_->load_rules().size(), 1u);
}

TEST_P(RuleStoreContract, ImportChangesRulesByTheirNamesAddsOthersAndLeavesTheRest) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = holdings(*store_);
  const Rule second{.name = L"second", .roll_offset = 3};
  std::vector<std::size_t> progress;
  store_->import_records({{sample_rule(L"first"), sample_rule(L"third"), second}},
                         [&](std::size_t done) { progress.push_back(done); });
  EXPECT_EQ(store_->load_rules(),
            (std::vector<StoredRule>{before.rules[0],
                                     {before.rules[1].number, before.rules[1].revision + 1, second},
                                     {before.rules[1].number + 1, 1, sample_rule(L"third")}}));
  EXPECT_EQ(store_->load_settings(), before.settings);
  EXPECT_EQ(progress, (std::vector<std::size_t>{0, 1, 2}));
  store_->import_records({{}, std::vector{sample_setting(L"lead", L"third")}});
  EXPECT_EQ(settings_of(*store_), std::vector{sample_setting(L"lead", L"third")});
  EXPECT_GT(store_->load_settings()[0].number, before.settings.back().number);
}

TEST_P(RuleStoreContract, ImportThatIsRefusedOrCancelledChangesNothing) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = holdings(*store_);
  const std::vector<Rule> rules{{.name = L"first"}, {.name = L"third"}};
  EXPECT_EQ(refusal_kind([&] { store_->import_records({{rules[0], rules[1], {}}}); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] {
              store_->import_records({rules, std::vector<SymbolSourceSetting>(1)});
            }),
            StoreErrorKind::invalid_value);
  struct Cancelled {};
  EXPECT_THROW(store_->import_records({rules},
                                      [](std::size_t done) {
                                        if (done == 1) throw Cancelled();
                                      }),
               Cancelled);
  EXPECT_EQ(holdings(*store_), before);
}

TEST_P(RuleStoreContract, ReplacedContentTakesNewNumbers) {
  const long old = store_->add_rule(sample_rule(L"old")).number;
  store_->replace_content(sample_content());
  const StoreSnapshot now = holdings(*store_);
  ASSERT_EQ(now.rules.size(), 2u);
  EXPECT_EQ(now.rules[0].rule, sample_content().rules[0]);
  EXPECT_EQ(now.rules[1].rule, sample_content().rules[1]);
  EXPECT_GT(now.rules[0].number, old);
  EXPECT_EQ(settings_of(*store_), sample_content().settings);
  EXPECT_EQ(now.calendars, sample_content().calendars);
}

TEST_P(RuleStoreContract, ContentIsReplacedWhollyOrNotAtAll) {
  store_->replace_content(sample_content());
  const StoreSnapshot before = holdings(*store_);
  StoreContent twice = sample_content();
  twice.rules.push_back(twice.rules.front());
  EXPECT_EQ(refusal_kind([&] { store_->replace_content(twice); }), StoreErrorKind::duplicate_name);
  StoreContent without_days = sample_content();
  without_days.calendars[0].calendar.to = {};
  EXPECT_EQ(refusal_kind([&] { store_->replace_content(without_days); }), StoreErrorKind::invalid_value);
  StoreContent nameless = sample_content();
  nameless.settings.push_back({});
  EXPECT_EQ(refusal_kind([&] { store_->replace_content(nameless); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(refusal_kind([&] { store_->replace_settings(nameless.settings); }), StoreErrorKind::invalid_value);
  EXPECT_EQ(holdings(*store_), before);
}

TEST_P(RuleStoreContract, EachChangeIsToldOnceAndARefusalNever) {
  int told = 0;
  const StoreSubscription subscription = store_->subscribe([&] { ++told; });
  const long number = store_->add_rule(sample_rule(L"gold")).number;
  EXPECT_EQ(told, 1);
  store_->update_rule(number, sample_rule(L"silver"));
  EXPECT_EQ(told, 2);
  store_->replace_settings({{L"setting", L"silver"}});
  EXPECT_EQ(told, 3);
  EXPECT_TRUE(refusal([&] { store_->delete_rule(number); }));
  EXPECT_TRUE(refusal([&] { store_->add_rule(sample_rule(L"silver")); }));
  EXPECT_EQ(told, 3);
  const StoredSetting setting = store_->add_setting(sample_setting(L"other", L"silver"));
  EXPECT_EQ(told, 4);
  store_->update_setting(setting.number, setting.setting);
  EXPECT_EQ(told, 5);
  EXPECT_TRUE(refusal([&] { store_->delete_setting(setting.number, 1); }));
  EXPECT_EQ(told, 5);
  store_->delete_setting(setting.number);
  EXPECT_EQ(told, 6);
  store_->replace_calendars({sample_calendar("exchange")});
  EXPECT_EQ(told, 7);
  store_->replace_content({});
  EXPECT_EQ(told, 8);
  EXPECT_FALSE(store_->poll_for_changes());
  EXPECT_EQ(told, 8);
}

TEST_P(RuleStoreContract, SubscriberSeesTheChangeAndMayLeaveOrThrow) {
  std::vector<std::size_t> seen;
  StoreSubscription leaving;
  leaving = store_->subscribe([&] { leaving.reset(); });
  const StoreSubscription throwing = store_->subscribe([] { throw 1; });
  const StoreSubscription counting = store_->subscribe([&] { seen.push_back(store_->load_rules().size()); });
  store_->add_rule(sample_rule(L"one"));
  store_->add_rule(sample_rule(L"two"));
  EXPECT_FALSE(leaving);
  EXPECT_EQ(seen, (std::vector<std::size_t>{1, 2}));
}

TEST_P(RuleStoreContract, DroppedSubscriptionHearsNothing) {
  int told = 0;
  store_->subscribe([&] { ++told; }).reset();
  store_->add_rule(sample_rule(L"gold"));
  EXPECT_EQ(told, 0);
}

}  // namespace
