#include <set>

#include "FinderOutput.h"
#include "ScheduleOutput.h"
#include "ScheduleTest.h"
#include "TextTable.h"
#include "YearPage.h"

namespace workbench::schedule {

namespace {

ScheduleRow row_of(const RuleNumbers& rule, std::string_view contract, std::string name = "CSI 300",
                   std::string setting = "", bool estimates = false) {
  return {std::move(name), std::move(setting),
          contract_dates(rule, month(contract), china(), {.estimates = estimates})};
}

const RuleNumbers third_friday = on_weekday(3, 5, current_month, true);

ScheduleRow on_calendar(std::string name) {
  ScheduleRow row = row_of(third_friday, "2026-12", "r", "two");
  row.calendar = std::move(name);
  return row;
}

}  // namespace

TEST(ScheduleOutput, CsvLeavesOnlyWhatIsUnknownEmpty) {
  RuleNumbers invalid = on_day(32);
  invalid.roll_offset = 100;
  const std::vector<ScheduleRow> rows{row_of(third_friday, "2026-02"),
                                      row_of(on_day(31), "2026-02", "last \"day\"", "a,b"),
                                      row_of(third_friday, "2027-01"),
                                      row_of(less(on_day(1, next_month, true), 3, in_trading_days), "2026-12"),
                                      row_of(less(on_day(5), 4, in_calendar_days), "2026-01"),
                                      row_of(invalid, "2026-01")};
  EXPECT_EQ(schedule_csv(rows),
            "rule,setting,contract,specified,expiration,roll,flags\r\n"
            "CSI 300,,2026-02,2026-02-20,2026-02-24,2026-02-24,moved\r\n"
            "\"last \"\"day\"\"\",\"a,b\",2026-02,2026-02-28,2026-02-27,2026-02-27,clamped;moved\r\n"
            "CSI 300,,2027-01,2027-01-15,,,beyond-calendar\r\n"
            "CSI 300,,2026-12,2027-01-01,,2026-12-29,beyond-calendar\r\n"
            "CSI 300,,2026-01,2026-01-05,2026-01-05,2026-01-01,closed\r\n"
            "CSI 300,,2026-01,,,,no-date:RollOffset;no-date:DayOfMonth\r\n");
}

TEST(ScheduleOutput, EstimatesAreFlagged) {
  EXPECT_EQ(schedule_csv(std::vector{row_of(third_friday, "2027-01", "r", "", true)}),
            "rule,setting,contract,specified,expiration,roll,flags\r\n"
            "r,,2027-01,2027-01-15,2027-01-15,2027-01-15,estimate\r\n");
}

TEST(ScheduleOutput, JsonHasNullForWhatIsUnknown) {
  EXPECT_EQ(schedule_json({}), "[\n]\n");
  const std::vector<ScheduleRow> rows{row_of(third_friday, "2026-02", "a\"b\xED\xA0\x80"),
                                      row_of(third_friday, "2027-01")};
  EXPECT_EQ(
      schedule_json(rows),
      "[\n"
      "  {\"rule\": \"a\\\"b\\uD800\", \"setting\": \"\", \"contract\": \"2026-02\", \"specified\": \"2026-02-20\", "
      "\"expiration\": \"2026-02-24\", \"roll\": \"2026-02-24\", \"flags\": [\"moved\"]},\n"
      "  {\"rule\": \"CSI 300\", \"setting\": \"\", \"contract\": \"2027-01\", \"specified\": \"2027-01-15\", "
      "\"expiration\": null, \"roll\": null, \"flags\": [\"beyond-calendar\"]}\n"
      "]\n");
}

TEST(ScheduleOutput, TableAlignsChineseLetters) {
  EXPECT_EQ(aligned_text({{"name", "x"}, {"\xE6\xB2\xAA\xE6\xB7\xB1", "y"}, {"a\nb", ""}}),
            "name  x\n\xE6\xB2\xAA\xE6\xB7\xB1  y\na b\n");
}

TEST(ScheduleOutput, ICalendarHasAnEventForEachKnownDay) {
  const std::vector<ScheduleRow> rows{
      row_of(less(on_day(1, next_month, true), 3, in_trading_days), "2026-12", "gold, new")};
  EXPECT_EQ(schedule_icalendar(rows, day("2026-11-22"), Language::english),
            "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//zdExpirationRules//workbench//EN\r\nBEGIN:VEVENT\r\n"
            "UID:roll-2026-12-8048406577663344785-1@expiration-rules\r\n"
            "DTSTAMP:20261122T000000Z\r\nDTSTART;VALUE=DATE:20261229\r\nDTEND;VALUE=DATE:20261230\r\n"
            "SUMMARY:gold\\, new 2026-12 roll\r\nDESCRIPTION:gold\\, new\\nbeyond-calendar\r\n"
            "STATUS:CONFIRMED\r\nTRANSP:TRANSPARENT\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
}

TEST(ScheduleOutput, ICalendarEventsOfDifferentSettingsAreDifferent) {
  const std::vector<ScheduleRow> rows{row_of(third_friday, "2026-12", "r", "one"),
                                      row_of(third_friday, "2026-12", "r", "two"),
                                      row_of(third_friday, "2026-12", "r", "two"), on_calendar("a"), on_calendar("b")};
  const std::string text = schedule_icalendar(rows, day("2026-11-22"), Language::chinese);
  std::set<std::string> identifiers;
  for (std::size_t at = text.find("UID:"); at != std::string::npos; at = text.find("UID:", at + 1))
    identifiers.insert(text.substr(at, text.find('\r', at) - at));
  EXPECT_EQ(identifiers.size(), 10U);
  EXPECT_NE(text.find("\xE6\x8D\xA2\xE6\x9C\x88"), text.npos) << "the roll in Chinese";
}

TEST(YearPage, ShowsEachDayWithItsRuleInItsMonthAndBelow) {
  const std::vector<ScheduleRow> rows{row_of(less(third_friday, 4, in_trading_days), "2026-02", "<CSI & 300>", "IF")};
  const std::string page = year_page(rows, std::chrono::year{2026}, &china(), Language::english);
  EXPECT_NE(page.find("<td class=\"expiration\">24\xE2\x97\x8F</td>"), page.npos);
  EXPECT_NE(page.find("<td class=\"roll\">10\xE2\x96\xB2</td>"), page.npos);
  EXPECT_NE(page.find("<li>24 \xE2\x97\x8F &lt;CSI &amp; 300&gt; (IF) 2026-02</li>"), page.npos);
  EXPECT_NE(page.find("<td class=\"closed\">17</td>"), page.npos);
  EXPECT_NE(page.find("<td>2026-02-24</td>"), page.npos);
  EXPECT_EQ(page.find("<script"), page.npos);
  EXPECT_EQ(page.find("http"), page.npos);
  std::size_t months = 0;
  for (std::size_t at = page.find("<section"); at != std::string::npos; at = page.find("<section", at + 1)) ++months;
  EXPECT_EQ(months, 12U);
}

TEST(YearPage, LegendSaysWhatIsStruckOut) {
  const std::vector<ScheduleRow> rows{row_of(third_friday, "2026-02")};
  const auto february_of = [](const std::string& page) {
    const std::size_t begin = page.find("February");
    return page.substr(begin, page.find("March") - begin);
  };
  const std::string holiday = "<td class=\"closed\">17</td>";
  const std::string saturday = "<td class=\"closed\">28</td>";
  const std::string one = year_page(rows, std::chrono::year{2026}, &china(), Language::english);
  EXPECT_NE(one.find("<span class=\"closed\">1</span> closed"), one.npos);
  EXPECT_NE(february_of(one).find(holiday), one.npos);
  const std::string several = year_page(rows, std::chrono::year{2026}, nullptr, Language::english);
  EXPECT_NE(several.find("<span class=\"closed\">1</span> weekend"), several.npos);
  EXPECT_EQ(february_of(several).find(holiday), several.npos);
  EXPECT_NE(february_of(several).find(saturday), several.npos);
}

TEST(YearPage, SettingsWithTheSameDayShareALine) {
  const std::vector<ScheduleRow> rows{row_of(third_friday, "2026-03", "r", "two"),
                                      row_of(third_friday, "2026-03", "r", "one"),
                                      row_of(third_friday, "2026-03", "s")};
  const std::string page = year_page(rows, std::chrono::year{2026}, &china(), Language::english);
  EXPECT_NE(page.find("<ul><li>20 \xE2\x97\x8F\xE2\x96\xB2 r (one, two) 2026-03</li>"
                      "<li>20 \xE2\x97\x8F\xE2\x96\xB2 s 2026-03</li></ul>"),
            page.npos);
}

TEST(YearPage, EstimatesAreMarked) {
  const std::vector<ScheduleRow> rows{row_of(third_friday, "2027-01", "r", "", true)};
  const std::string page = year_page(rows, std::chrono::year{2027}, &china(), Language::chinese);
  EXPECT_NE(page.find("<li>15 \xE2\x97\x8F\xE2\x96\xB2? r 2027-01</li>"), page.npos);
  EXPECT_NE(page.find("<td class=\"estimate\">2027-01-15?</td>"), page.npos);
}

TEST(CheckOutput, SaysWhatWasFoundAndWhatWouldExplainIt) {
  const std::vector<CheckRow> rows{
      {"r", check_date(third_friday, {month("2026-01"), day("2026-01-16")}, china(), Against::roll)},
      {"r", check_date(third_friday, {month("2026-02"), day("2026-02-20")}, china(), Against::roll)},
      {"r",
       check_date(less(on_day(15), 3, in_trading_days), {month("2026-01"), day("2026-01-09")}, china(), Against::roll)},
      {"r", check_date(third_friday, {month("2027-01"), day("2027-01-15")}, china(), Against::roll)}};
  EXPECT_EQ(check_csv(rows),
            "rule,contract,listed,found,days,explained_by\r\n"
            "r,2026-01,2026-01-16,2026-01-16,0,\r\n"
            "r,2026-02,2026-02-20,2026-02-24,4,2026-02-20\r\n"
            "r,2026-01,2026-01-09,2026-01-12,3,2026-01-12;2026-01-13;2026-01-14;2026-01-15\r\n"
            "r,2027-01,2027-01-15,,,\r\n");
}

TEST(FinderOutput, RanksRulesWithTheirNumbers) {
  FoundRules found{.counted = 3,
                   .agreeing = 0,
                   .rules = {{third_friday, 1, {month("2026-01"), month("2026-02")}}},
                   .closed = {},
                   .beyond_calendar = {{month("2027-01"), day("2027-01-15")}}};
  EXPECT_EQ(found_csv(found),
            "rank,matched,of,RollOffset,DayType,DayMode,DayOfMonth,DayMonth,WeekOrdinal,Weekday,WeekdayMonth,"
            "MoveToNextTradingDay,missed\r\n"
            "1,1,3,0,0,1,1,1,3,5,1,1,2026-01;2026-02\r\n");
  EXPECT_EQ(found_json(found),
            "{\"counted\": 3, \"agreeing\": 0, \"closed\": [], \"beyond_calendar\": "
            "[{\"contract\": \"2027-01\", \"date\": \"2027-01-15\"}], \"rules\": [\n"
            "  {\"rank\": 1, \"matched\": 1, \"of\": 3, \"RollOffset\": 0, \"DayType\": 0, \"DayMode\": 1, "
            "\"DayOfMonth\": 1, \"DayMonth\": 1, \"WeekOrdinal\": 3, \"Weekday\": 5, \"WeekdayMonth\": 1, "
            "\"MoveToNextTradingDay\": 1, \"missed\": [\"2026-01\", \"2026-02\"]}]}\n");
}

}  // namespace workbench::schedule
