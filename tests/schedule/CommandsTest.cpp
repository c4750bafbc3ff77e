#include <algorithm>

#include "CommandTest.h"

namespace workbench::schedule {

namespace {

const std::string rules_csv = rule_columns +
                              "\nCSI 300,0,0,1,1,1,3,5,1,1\n"
                              "copper,0,0,0,15,1,1,1,1,1\n";

class Commands : public CommandTest {
 protected:
  Commands() {
    input_.calendars = shipped_calendars();
    input_.today = day("2026-01-10");
    files_["rules.csv"] = rules_csv;
  }

  /// The exit code and the messages.
  std::string outcome(const std::vector<std::string>& arguments) {
    const CommandOutput output = run(arguments);
    std::string text = std::to_string(output.exit_code);
    for (const std::string& message : output.messages) text += "|" + message;
    return text;
  }
};

const std::vector<std::string> schedule_csi{"--rules",    "rules.csv",     "--schedule", "CSI 300",
                                            "--calendar", "china-futures", "--format",   "csv"};

std::vector<std::string> operator+(std::vector<std::string> left, const std::vector<std::string>& right) {
  left.insert(left.end(), right.begin(), right.end());
  return left;
}

}  // namespace

TEST_F(Commands, ScheduleGivesMonthsFromThisMonthOn) {
  const CommandOutput output = run(schedule_csi + std::vector<std::string>{"--months", "2"});
  EXPECT_EQ(output.exit_code, done);
  EXPECT_EQ(output.data,
            "rule,setting,contract,specified,expiration,roll,flags\r\n"
            "CSI 300,,2026-01,2026-01-16,2026-01-16,2026-01-16,\r\n"
            "CSI 300,,2026-02,2026-02-20,2026-02-24,2026-02-24,moved\r\n");
}

TEST_F(Commands, ScheduleTakesTodayFromAndEstimates) {
  EXPECT_NE(run(schedule_csi + std::vector<std::string>{"--today", "2015-02-03"}).data.find("2015-02-25"),
            std::string::npos);
  const std::vector<std::string> next_year{"--from", "2027-01", "--months", "1"};
  EXPECT_NE(run(schedule_csi + next_year).data.find("2027-01-15,,,beyond-calendar"), std::string::npos);
  EXPECT_NE(run(schedule_csi + next_year + std::vector<std::string>{"--estimate"}).data.find("2027-01-15,estimate"),
            std::string::npos);
}

TEST_F(Commands, ScheduleAllGivesEveryRuleInEachFormat) {
  const std::vector<std::string> all{"--rules", "rules.csv", "--schedule-all", "--calendar", "china-futures"};
  EXPECT_NE(run(all).data.find("copper" + std::string(12, ' ') + "2026-02"), std::string::npos);
  EXPECT_EQ(run(all + std::vector<std::string>{"--format", "json"}).data.front(), '[');
  EXPECT_EQ(run(all + std::vector<std::string>{"--format", "ics"}).data.substr(0, 15), "BEGIN:VCALENDAR");
  EXPECT_EQ(run(all + std::vector<std::string>{"--format", "html"}).data.substr(0, 15), "<!DOCTYPE html>");
}

TEST_F(Commands, PageHasWhatHappensInItsYearWhateverTheContract) {
  // The day is the first of the next month, or 60 trading days before the fifteenth of the month.
  files_["rules.csv"] = rules_csv + "gold,0,0,0,1,2,1,1,1,1\nearly,60,0,0,15,1,1,1,1,1\n";
  const std::vector<std::string> page{"--calendar", "china-futures", "--format", "html", "--from", "2025-06"};
  const std::string gold = run(std::vector<std::string>{"--rules", "rules.csv", "--schedule", "gold"} + page).data;
  EXPECT_NE(gold.find("<td>2024-12</td><td>2025-01-01</td>"), std::string::npos) << "expires in January";
  EXPECT_NE(gold.find("<td>2025-11</td>"), std::string::npos);
  EXPECT_EQ(gold.find("<td>2025-12</td>"), std::string::npos) << "expires in the next year";
  const std::string early = run(std::vector<std::string>{"--rules", "rules.csv", "--schedule", "early"} + page).data;
  EXPECT_NE(early.find("<td>2025-01</td>"), std::string::npos) << "before --from";
  EXPECT_NE(early.find("<td>2026-03</td>"), std::string::npos) << "rolls in December";
  EXPECT_EQ(early.find("<td>2026-05</td>"), std::string::npos);
}

TEST_F(Commands, MonthsMayLeadBeyond2199) {
  const std::vector<std::string> last{"--from", "2199-12", "--months", "2"};
  EXPECT_EQ(run(schedule_csi + last).data,
            "rule,setting,contract,specified,expiration,roll,flags\r\n"
            "CSI 300,,2199-12,2199-12-20,,,beyond-calendar\r\n"
            "CSI 300,,2200-01,2200-01-17,,,beyond-calendar\r\n");
  EXPECT_EQ(outcome(schedule_csi + std::vector<std::string>{"--from", "2200-01"}),
            "2|\"2200-01\" is no value of --from");
  EXPECT_EQ(run(schedule_csi + std::vector<std::string>{"--from", "2199-12", "--months", "1200"}).exit_code, done);
}

TEST_F(Commands, CalendarWithAnEndingOrASeparatorIsAFile) {
  const std::string mine = "# name: mine\n# from: 2026-01-01\n# to: 2026-01-31\ndate\n2026-01-16\n";
  const auto command = [](const char* file) {
    return std::vector<std::string>{"--rules", "rules.csv", "--schedule", "CSI 300", "--calendar", file};
  };
  for (const char* file : {"my.csv", "my.CSV", "calendars/mine", "calendars\\mine"}) {
    files_[file] = mine;
    EXPECT_NE(run(command(file)).data.find("2026-01-19"), std::string::npos) << file;
  }
  files_["my.csv"] += "x\n";
  EXPECT_EQ(outcome(command("my.csv")), "3|my.csv:6: expected a day like 2026-01-16, from 1900 to 2199; found \"x\"");
  EXPECT_EQ(run(command("my.csv")).data, "");
}

TEST_F(Commands, TableOfTwelveMonthsFromThisOneIsTheDefault) {
  const std::string table = run({"--rules", "rules.csv", "--schedule", "CSI 300", "--calendar", "china-futures"}).data;
  EXPECT_EQ(std::ranges::count(table, '\n'), 13);
  EXPECT_EQ(table.substr(0, table.find("CSI 300           2026-03")),
            "rule     setting  contract  specified   expiration  roll        flags\n"
            "CSI 300           2026-01   2026-01-16  2026-01-16  2026-01-16\n"
            "CSI 300           2026-02   2026-02-20  2026-02-24  2026-02-24  moved\n");
}

TEST_F(Commands, RollDayIsMeantUnlessTheCommandSaysOtherwise) {
  files_["rules.csv"] = rules_csv + "early,3,0,0,15,1,1,1,1,1\n";
  files_["list.csv"] = "rule,contract,date\nearly,2026-01,2026-01-15\n";
  const std::vector<std::string> check{"--rules", "rules.csv", "--check", "list.csv", "--calendar", "china-futures"};
  const auto found = [&](const std::vector<std::string>& command) {
    const std::string data = run(command).data;
    return data.substr(data.find("early"));
  };
  EXPECT_TRUE(found(check).starts_with("early,2026-01,2026-01-15,2026-01-12,-3,"));
  EXPECT_EQ(found(check + std::vector<std::string>{"--against", "roll"}), found(check));
  EXPECT_EQ(found(check + std::vector<std::string>{"--against", "expiration"}),
            "early,2026-01,2026-01-15,2026-01-15,0,\r\n");

  files_["dates.csv"] = "contract,date\n2026-01,2026-01-12\n2026-02,2026-02-11\n2026-03,2026-03-11\n";
  const std::vector<std::string> find{"--find-rule", "dates.csv", "--calendar", "china-futures", "--format", "csv"};
  EXPECT_NE(run(find).data.find(",3,0,0,15,1,1,1,1,1,\r\n"), std::string::npos);
  EXPECT_EQ(run(find + std::vector<std::string>{"--against", "roll"}).data, run(find).data);
  EXPECT_EQ(run(find + std::vector<std::string>{"--against", "expiration"}).data.find(",3,0,0,15,1,1,1,1,1,\r\n"),
            std::string::npos);
}

TEST_F(Commands, SettingsOfAStoreGiveTheirRows) {
  input_.rules = {{"CSI 300", on_weekday(3, 5, current_month, true)}};
  input_.settings = {{"IF", "CSI 300", "china-futures", "HMUZ", true}, {"other", "x"}, {"US", "CSI 300", "us-futures"}};
  const CommandOutput output = run({"--store", "s", "--schedule", "CSI 300", "--months", "3", "--format", "csv"});
  EXPECT_EQ(output.data,
            "rule,setting,contract,specified,expiration,roll,flags\r\n"
            "CSI 300,IF,2026-03,2026-03-20,2026-03-20,2026-03-20,\r\n"
            "CSI 300,US,2026-01,2026-01-16,2026-01-16,2026-01-16,\r\n"
            "CSI 300,US,2026-02,2026-02-20,2026-02-20,2026-02-20,\r\n"
            "CSI 300,US,2026-03,2026-03-20,2026-03-20,2026-03-20,\r\n");
}

TEST_F(Commands, RuleWithoutCalendarNeedsOne) {
  EXPECT_EQ(outcome({"--rules", "rules.csv", "--schedule", "CSI 300"}),
            "2|no setting gives the rule \"CSI 300\" a calendar: add one that does, or name a calendar with "
            "--calendar");
}

TEST_F(Commands, CheckComparesAListWithTheRules) {
  files_["list.csv"] = "rule,contract,date\nCSI 300,IF2602,2026-02-24\ncopper,2026-01,2026-01-15\n";
  const std::vector<std::string> command{"--rules", "rules.csv", "--check", "list.csv", "--calendar", "china-futures"};
  EXPECT_EQ(outcome(command), "0");
  EXPECT_EQ(run(command).data,
            "rule,contract,listed,found,days,explained_by\r\n"
            "CSI 300,2026-02,2026-02-24,2026-02-24,0,\r\n"
            "copper,2026-01,2026-01-15,2026-01-15,0,\r\n");
  files_["list.csv"] += "copper,2026-02,2026-02-16\n";
  EXPECT_EQ(outcome(command), "1");
  files_["list.csv"] =
      "rule,contract,date,x\nzinc,2026-01,2026-01-15,\ncopper,x,2026-01-15,\ncopper,2026-01,2026-01-15,\n";
  EXPECT_EQ(outcome(command),
            "1|list.csv: the column \"x\" is ignored|list.csv:2: there is no rule \"zinc\""
            "|list.csv:3: expected a contract like 2026-01, 202601, 2601, IF2601 or CLF26; found \"x\"");
  files_["list.csv"] = "rule;contract;date\n";
  EXPECT_EQ(run(command).exit_code, unusable_file);
}

TEST_F(Commands, CheckComparesWithEachSettingOfTheRule) {
  input_.rules = {{"r", less(on_weekday(3, 5, current_month, true), 1, in_trading_days)}};
  input_.settings = {{"none", "r"}, {"US", "r", "us-futures"}, {"CN", "r", "china-futures", "", true}};
  const std::vector<std::string> command{"--store", "s", "--check", "list.csv"};
  files_["list.csv"] = "rule,contract,date\nr,2026-01,2026-01-15\nr,2026-02,2026-02-24\nr,2026-03,2026-03-23\n";
  const CommandOutput output = run(command);
  EXPECT_EQ(output.exit_code, with_differences);
  EXPECT_TRUE(output.messages.empty());
  EXPECT_EQ(output.data.substr(0, output.data.find("r,2026-03")),
            "rule,contract,listed,found,days,explained_by\r\n"
            "r,2026-01,2026-01-15,2026-01-15,0,\r\n"
            "r,2026-02,2026-02-24,2026-02-24,0,\r\n");
  EXPECT_NE(output.data.find("r,2026-03,2026-03-23,2026-03-20,-3,"), std::string::npos) << "the nearest one";
  input_.settings.resize(1);
  files_["list.csv"].resize(files_["list.csv"].find("r,2026-02"));
  EXPECT_EQ(outcome(command),
            "2|list.csv:2: no setting gives the rule \"r\" a calendar: add one that does, or name a calendar with "
            "--calendar");
}

TEST_F(Commands, CheckLeavesOutASettingWhoseCalendarDoesNotExistAndGoesOn) {
  input_.rules = {{"r", on_day(15)}, {"s", on_day(16)}};
  input_.settings = {{"moon", "r", "moon"}, {"CN", "s", "china-futures"}};
  files_["list.csv"] = "rule,contract,date\nr,2026-01,2026-01-15\ns,2026-01,2026-01-16\nr,2026-02,2026-02-15\n";
  const std::vector<std::string> command{"--store", "s", "--check", "list.csv"};
  const std::string left_out =
      R"(1|the setting "moon" of the rule "r" names the calendar "moon", which does not exist, and is left out)";
  EXPECT_EQ(outcome(command), left_out);
  EXPECT_EQ(run(command).data,
            "rule,contract,listed,found,days,explained_by\r\ns,2026-01,2026-01-16,2026-01-16,0,\r\n");
  input_.settings.push_back({"CN", "r", "china-futures"});
  EXPECT_EQ(outcome(command), left_out);
  EXPECT_NE(run(command).data.find("\r\nr,2026-01,2026-01-15,2026-01-15,0,\r\n"), std::string::npos);
}

TEST_F(Commands, CheckNamesAContractThatNoSettingDelivers) {
  input_.rules = {{"r", on_day(15)}};
  input_.settings = {{"IF", "r", "china-futures", "HMUZ"}, {"IH", "r", "china-futures", "F", true}};
  files_["list.csv"] = "rule,contract,date\nr,2026-02,2026-02-13\nr,2026-01,2026-01-15\nr,2026-06,2026-06-15\n";
  const std::vector<std::string> command{"--store", "s", "--check", "list.csv"};
  EXPECT_EQ(outcome(command), "1|list.csv:2: no setting of the rule \"r\" has 2026-02 among its delivery months");
  EXPECT_EQ(run(command).data,
            "rule,contract,listed,found,days,explained_by\r\n"
            "r,2026-01,2026-01-15,2026-01-15,0,\r\n"
            "r,2026-06,2026-06-15,2026-06-15,0,\r\n");
}

TEST_F(Commands, EveryRuleWithoutACalendarIsNamed) {
  input_.rules = {{"a", on_day(15)}, {"b", on_day(16)}, {"c", on_day(17)}};
  input_.settings = {{"CN", "b", "china-futures"}};
  const std::string needed = " a calendar: add one that does, or name a calendar with --calendar";
  EXPECT_EQ(outcome({"--store", "s", "--schedule-all"}),
            "2|no setting gives the rule \"a\"" + needed + "|no setting gives the rule \"c\"" + needed);
  EXPECT_EQ(run({"--store", "s", "--schedule-all"}).data, "");
}

TEST_F(Commands, ScheduleLeavesOutASettingWhoseCalendarDoesNotExistAndGoesOn) {
  input_.rules = {{"a", on_day(15)}, {"b", on_day(16)}};
  input_.settings = {{"moon", "a", "moon"}, {"CN", "b", "china-futures"}};
  const std::vector<std::string> command{"--store", "s", "--schedule-all", "--months", "1", "--format", "csv"};
  EXPECT_EQ(outcome(command),
            "1|the setting \"moon\" of the rule \"a\" names the calendar \"moon\", which does not exist, and is left "
            "out");
  EXPECT_EQ(run(command).data,
            "rule,setting,contract,specified,expiration,roll,flags\r\n"
            "b,CN,2026-01,2026-01-16,2026-01-16,2026-01-16,\r\n");
}

TEST_F(Commands, EndingsOfFilesAreTheSameInUpperCase) {
  input_.rules = {{"r", on_day(15)}};
  EXPECT_EQ(run({"--store", "s", "--export", "all.JSON"}).file.value().front(), '{');
  EXPECT_EQ(run({"--store", "s", "--export", "all.Csv"}).file.value().front(), 'R');
  files_["all.Json"] = "{\"rules\": []}";
  EXPECT_EQ(outcome({"--store", "s", "--import", "all.Json"}),
            "0|0 added, 0 changed, 0 left alone, 0 removed, 0 refused|nothing was changed");
  files_["x.ICS"] = "no events";
  EXPECT_EQ(run({"--store", "s", "--import-calendar", "x.ICS"}).exit_code, wrong_arguments) << "it needs a name";
}

TEST_F(Commands, SettingWithoutCalendarLeavesTheOthersTheirRows) {
  input_.rules = {{"r", on_day(15)}};
  input_.settings = {{"none", "r"}, {"CN", "r", "china-futures"}};
  const std::vector<std::string> command{"--store", "s", "--schedule", "r", "--months", "1", "--format", "csv"};
  EXPECT_EQ(outcome(command), "0|the setting \"none\" of the rule \"r\" names no calendar and is left out");
  EXPECT_NE(run(command).data.find("r,CN,2026-01,2026-01-15"), std::string::npos);
  input_.settings.resize(1);
  EXPECT_EQ(outcome(command),
            "2|no setting gives the rule \"r\" a calendar: add one that does, or name a calendar with --calendar");
}

TEST_F(Commands, FindRuleNamesTheRules) {
  files_["dates.csv"] =
      "contract,date\n2015-02,2015-02-25\n2024-02,2024-02-19\n2026-02,2026-02-24\n2027-01,2027-01-15\n";
  const std::vector<std::string> command{"--find-rule", "dates.csv", "--calendar", "china-futures", "--format", "csv"};
  const CommandOutput output = run(command);
  EXPECT_EQ(output.exit_code, done);
  EXPECT_NE(output.data.find(",3,3,0,0,1,1,1,3,5,1,1,\r\n"), std::string::npos);
  ASSERT_EQ(output.messages.size(), 2U);
  EXPECT_EQ(output.messages[0], "dates.csv:5: 2027-01-15 lies beyond the calendar and does not count");
  EXPECT_NE(output.messages[1].find("rules give all 3 dates; more dates would separate them"), std::string::npos);
  const std::string one = run(command + std::vector<std::string>{"--limit", "1"}).data;
  EXPECT_EQ(std::ranges::count(one, '\n'), 2);

  files_["dates.csv"] = "contract,date\n2026-01,2026-01-17\n2026-02,2026-01-16\n";
  EXPECT_EQ(outcome(command),
            "1|dates.csv:2: the exchange is closed on 2026-01-17|no rule gives all 2 dates; the best ones are listed");
}

TEST_F(Commands, DatesOfWhichNoneCountsFindNoRule) {
  files_["dates.csv"] = "contract,date\n2027-01,2027-01-15\n";
  EXPECT_EQ(outcome({"--find-rule", "dates.csv", "--calendar", "china-futures"}),
            "1|dates.csv:2: 2027-01-15 lies beyond the calendar and does not count|"
            "none of the dates counts, so no rule can be found");
  files_["dates.csv"] = "contract,date\n";
  EXPECT_EQ(outcome({"--find-rule", "dates.csv", "--calendar", "china-futures"}),
            "1|none of the dates counts, so no rule can be found");
}

TEST_F(Commands, UnusableFilesAreNamed) {
  EXPECT_EQ(outcome({"--rules", "missing.csv", "--schedule-all"}), "3|missing.csv: the file cannot be read");
  files_["bad.csv"] = "RuleName\n";
  EXPECT_EQ(run({"--rules", "bad.csv", "--schedule-all"}).exit_code, unusable_file);
  files_["twice.csv"] = rules_csv + "copper,0,0,0,15,1,1,1,1,1\n";
  EXPECT_EQ(outcome({"--rules", "twice.csv", "--schedule-all"}),
            "3|twice.csv:4: expected each rule once; \"copper\" is on line 3 already");
}

TEST_F(Commands, UnknownNamesAreWrongArguments) {
  EXPECT_EQ(outcome({"--rules", "rules.csv", "--schedule", "zinc"}), "2|there is no rule \"zinc\"");
  EXPECT_EQ(outcome({"--rules", "rules.csv", "--schedule-all", "--calendar", "moon"}),
            "2|there is no calendar \"moon\"");
}

TEST_F(Commands, InvalidArgumentsAreNamed) {
  EXPECT_EQ(outcome({"--rules", "r", "--schedule"}), "2|--schedule needs a value");
  EXPECT_EQ(outcome({"--rules", "--schedule-all"}), "2|--rules needs a value");
  EXPECT_EQ(outcome({"--rules", "r", "--schedule-all", "--check", "x"}),
            "2|only one command at a time: --schedule-all and --check");
  EXPECT_EQ(outcome({"--schedule-all"}), "2|exactly one of these is needed: --store, --rules");
  EXPECT_EQ(outcome({"--schedule-all", "--rules", "r", "--store", "s"}),
            "2|exactly one of these is needed: --store, --rules");
  EXPECT_EQ(outcome({"--find-rule", "x"}), "2|exactly one of these is needed: --calendar");
  EXPECT_EQ(outcome({"--find-rule", "x", "--calendar", "c", "--format", "html"}), "2|\"html\" is no value of --format");
  EXPECT_EQ(outcome({"--schedule-all", "--colour", "red"}), "2|unknown argument: --colour");
  EXPECT_EQ(outcome({"--schedule-all", "--rules", "r", "--against", "roll"}), "2|--schedule-all takes no --against");
  EXPECT_EQ(outcome({"--export", "a.csv", "--store", "s", "--dry-run"}), "2|--export takes no --dry-run");
  EXPECT_EQ(outcome({"--import", "a.txt", "--store", "s"}), "2|\"a.txt\" is no value of --import");
  EXPECT_EQ(outcome({"--import", "a.csv"}), "2|exactly one of these is needed: --store");
  EXPECT_EQ(outcome({"--calendars"}), "2|exactly one of these is needed: --store");
  struct BadValue {
    std::vector<std::string> command;
    std::string option;
    std::string value;
  };
  const std::vector<std::string> schedule{"--schedule-all", "--rules", "r"};
  const std::vector<std::string> find{"--find-rule", "d.csv", "--calendar", "c"};
  const std::vector<std::string> events{"--import-calendar", "c.ics", "--store", "s"};
  for (const auto& [command, option, value] :
       std::vector<BadValue>{{schedule, "--from", "2026"},
                             {schedule, "--today", "2026-02-30"},
                             {schedule, "--months", "0"},
                             {schedule, "--months", "1201"},
                             {schedule, "--months", "1x"},
                             {find, "--limit", "0"},
                             {schedule, "--format", "xml"},
                             {find, "--against", "both"},
                             {events, "--from", "2026-01"},
                             {events, "--to", "2026"},
                             {events, "--name", "a/b"},
                             {{"--export", "a.csv", "--store", "s"}, "--what", "x"}})
    EXPECT_EQ(outcome(command + std::vector<std::string>{option, value}),
              "2|\"" + value + "\" is no value of " + option);
  EXPECT_EQ(outcome(events + std::vector<std::string>{"--from", "2026-02-01", "--to", "2026-01-31"}),
            "2|\"2026-01-31\" is no value of --to");
}

TEST_F(Commands, AreRecognised) {
  EXPECT_TRUE(is_schedule_command(schedule_csi));
  EXPECT_TRUE(is_schedule_command(std::vector<std::string>{"--find-rule"}));
  EXPECT_FALSE(is_schedule_command(std::vector<std::string>{"--store", "s", "--show", "1"}));
}

}  // namespace workbench::schedule
