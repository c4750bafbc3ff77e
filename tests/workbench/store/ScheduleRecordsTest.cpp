#include <gtest/gtest.h>

#include "MemoryRuleStore.h"
#include "ScheduleRecords.h"
#include "StoreSamples.h"

using namespace workbench;

namespace {

TEST(ScheduleRecords, RulesAndSettingsComeBackUnchanged) {
  for (const std::wstring& name : awkward_names()) {
    EXPECT_EQ(from_named(to_named(sample_rule(name))), sample_rule(name));
    EXPECT_EQ(from_named(to_named(sample_setting(name, name))), sample_setting(name, name));
  }
}

TEST(ScheduleRecords, EverythingOfAStoreIsLoaded) {
  MemoryRuleStore store;
  store.replace_content(sample_content());
  const NamedRecords records = load_named(store);
  ASSERT_EQ(records.rules.size(), 2u);
  EXPECT_EQ(records.rules[1], to_named(sample_rule(L"second")));
  ASSERT_EQ(records.settings.size(), 3u);
  EXPECT_EQ(records.settings[2], (schedule::NamedSetting{"zinc", "first", "exchange", "HMUZ", true}));
  EXPECT_EQ(records.calendars, std::vector{sample_calendar("exchange").calendar});
}

TEST(ScheduleRecords, NumbersKeepTheirFields) {
  const schedule::RuleNumbers numbers = to_rule_numbers(sample_rule(L"rule"));
  EXPECT_EQ(numbers, (schedule::RuleNumbers{99, 1, 1, 31, 2, 5, 6, 2, 1}));
}

TEST(ScheduleRecords, NewRuleHasTheSameNumbersInBothForms) {
  EXPECT_EQ(to_rule_numbers(Rule()), schedule::RuleNumbers());
}

TEST(ScheduleRecords, NamesAreUtf8WhereThereIsSuchAForm) {
  EXPECT_EQ(to_schedule_text(std::wstring(L"铜\0x", 3)), std::string("铜\0x", 5));
  EXPECT_EQ(to_schedule_text(L"\xD800"), "\xED\xA0\x80");
}

}  // namespace
