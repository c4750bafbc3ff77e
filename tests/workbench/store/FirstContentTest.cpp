#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "FirstContent.h"
#include "MemoryRuleStore.h"
#include "ScheduleRecords.h"
#include "TradingCalendar.h"

using namespace std::chrono;
using namespace workbench;

namespace {

const Rule* find_rule(const StoreContent& content, const std::wstring& name) {
  const auto found = std::ranges::find(content.rules, name, &Rule::name);
  return found == content.rules.end() ? nullptr : &*found;
}

TEST(FirstContent, FitsIntoAStore) {
  MemoryRuleStore store;
  store.replace_content(first_content());
  EXPECT_EQ(store.load_rules().size(), first_content().rules.size());
  EXPECT_GE(store.load_rules().size(), 30u);
}

TEST(FirstContent, NamesAreOfTheKindThatTheEditorSaves) {
  for (const Rule& rule : first_content().rules) {
    EXPECT_LE(rule.name.size(), 63u);
    EXPECT_TRUE(std::ranges::all_of(rule.name, [](wchar_t unit) {
      return unit < 0x80 && (isalnum(unit) || unit == L' ' || unit == L'*');
    })) << testing::PrintToString(rule.name);
  }
}

TEST(FirstContent, SettingsUseRulesThatAreThere) {
  const StoreContent content = first_content();
  for (const SymbolSourceSetting& setting : content.settings)
    EXPECT_TRUE(find_rule(content, setting.rule_name)) << testing::PrintToString(setting.rule_name);
}

TEST(FirstContent, SettingsUseCalendarsThatAreThere) {
  const StoreContent content = first_content();
  std::set<std::string> calendars;
  for (const StoredCalendar& stored : content.calendars) calendars.insert(stored.calendar.name);
  EXPECT_EQ(calendars.size(), 7u);
  for (const SymbolSourceSetting& setting : content.settings)
    EXPECT_TRUE(calendars.contains(to_schedule_text(setting.calendar))) << testing::PrintToString(setting.name);
}

TEST(FirstContent, SettingsNameTheDeliveryMonthsOfTheirContracts) {
  std::map<std::wstring, std::wstring> months;
  for (const SymbolSourceSetting& setting : first_content().settings) months[setting.name] = setting.months;
  EXPECT_EQ(months[L"T 10年期国债"], L"HMUZ");
  EXPECT_EQ(months[L"ZC Corn"], L"HKNUZ");
  EXPECT_EQ(months[L"CU 沪铜 主力连续"], L"");
}

TEST(FirstContent, RulesHaveNoUserOrUpToFive) {
  std::map<std::wstring, int> users;
  for (const Rule& rule : first_content().rules) users[rule.name] = 0;
  for (const SymbolSourceSetting& setting : first_content().settings) ++users[setting.rule_name];
  std::set<int> counts;
  for (const auto& [name, count] : users) counts.insert(count);
  for (const int count : {0, 1, 2, 3, 5}) EXPECT_TRUE(counts.contains(count)) << count;
}

TEST(FirstContent, UnusedFieldsHoldTheValuesOfANewRule) {
  for (const Rule& rule : first_content().rules) {
    if (rule.day_mode == 0)
      EXPECT_EQ(std::tie(rule.week_ordinal, rule.weekday, rule.weekday_month), std::make_tuple(1, 1, 1));
    else
      EXPECT_EQ(std::tie(rule.day_of_month, rule.day_month), std::make_tuple(1, 1));
  }
}

struct LastTradingDay {
  const wchar_t* rule;
  year_month contract;
  year_month_day day;
};

void PrintTo(const LastTradingDay& expected, std::ostream* stream) {
  *stream << testing::PrintToString(std::wstring(expected.rule)) << ' ' << static_cast<int>(expected.contract.year())
          << '-' << static_cast<unsigned>(expected.contract.month());
}

Holidays between(year_month_day first, year_month_day last) {
  Holidays holidays;
  for (sys_days day = first; day <= sys_days(last); day += days(1)) holidays.insert(day);
  return holidays;
}

/// Christmas, New Year, the Chinese New Year and Good Friday of 2024, for every exchange alike.
Holidays holidays_of_2024() {
  Holidays holidays = between(2024y / 2 / 9, 2024y / 2 / 18);
  holidays.insert({2023y / 12 / 25, 2024y / 1 / 1, 2024y / 3 / 29});
  return holidays;
}

/// The rules against last trading days that the exchanges published.
class FirstContentDates : public testing::TestWithParam<LastTradingDay> {};

INSTANTIATE_TEST_SUITE_P(Contracts, FirstContentDates,
                         testing::Values(LastTradingDay{L"CSI 300 index futures", 2024y / 3, 2024y / 3 / 15},
                                         LastTradingDay{L"CSI 300 index futures", 2024y / 2, 2024y / 2 / 19},
                                         LastTradingDay{L"CFFEX treasury bond futures", 2024y / 3, 2024y / 3 / 8},
                                         LastTradingDay{L"SHFE copper", 2024y / 3, 2024y / 3 / 15},
                                         LastTradingDay{L"SHFE copper", 2024y / 6, 2024y / 6 / 17},
                                         LastTradingDay{L"INE crude oil", 2024y / 3, 2024y / 2 / 29},
                                         LastTradingDay{L"INE freight", 2024y / 4, 2024y / 4 / 29},
                                         LastTradingDay{L"HKEX index futures", 2024y / 3, 2024y / 3 / 27},
                                         LastTradingDay{L"OSE Nikkei 225", 2024y / 3, 2024y / 3 / 7},
                                         LastTradingDay{L"KRX KOSPI 200", 2024y / 3, 2024y / 3 / 14},
                                         LastTradingDay{L"COMEX gold", 2024y / 4, 2024y / 4 / 26},
                                         LastTradingDay{L"COMEX gold", 2024y / 6, 2024y / 6 / 26},
                                         LastTradingDay{L"NYMEX crude oil", 2024y / 1, 2023y / 12 / 19},
                                         LastTradingDay{L"NYMEX crude oil", 2024y / 5, 2024y / 4 / 22},
                                         LastTradingDay{L"NYMEX natural gas", 2024y / 5, 2024y / 4 / 26},
                                         LastTradingDay{L"CME equity index futures", 2024y / 3, 2024y / 3 / 15},
                                         LastTradingDay{L"CME currency futures", 2024y / 3, 2024y / 3 / 18},
                                         LastTradingDay{L"CBOT grains and oilseeds", 2024y / 3, 2024y / 3 / 14},
                                         LastTradingDay{L"CBOT 10 year treasury notes", 2024y / 3, 2024y / 3 / 19},
                                         LastTradingDay{L"Eurex equity index futures", 2024y / 3, 2024y / 3 / 15},
                                         LastTradingDay{L"Eurex euro bond futures", 2024y / 3, 2024y / 3 / 7}));

TEST_P(FirstContentDates, RuleGivesTheExchangesDay) {
  const StoreContent content = first_content();
  const Rule* rule = find_rule(content, GetParam().rule);
  ASSERT_TRUE(rule);
  EXPECT_EQ(sys_days(expiration_day(*rule, GetParam().contract, holidays_of_2024())), sys_days(GetParam().day));
}

}  // namespace
