#include "CommandTest.h"

namespace workbench::schedule {

namespace {

const std::string rule_columns_line = rule_columns + "\r\n";

/// The file of the store's calendar "test", which knows the days up to 2026-03-31, with another last day.
std::string calendar_known_to(const std::string& last) {
  return "# name: test\n# title: 测试\n# from: 2026-01-01\n# to: " + last +
         "\ndate,reason\n2026-01-15,closed\n2026-02-16,\n";
}

class StoreCommands : public CommandTest {
 protected:
  StoreCommands() {
    input_.rules = {{"CSI 300", on_weekday(3, 5, current_month, true)}, {"copper", on_day(15, current_month, true)}};
    input_.settings = {{"IF", "CSI 300", "test", "HMUZ"}, {"CU", "copper", "test"}, {"other", "copper", "us-futures"}};
    Calendar calendar{.name = "test", .title = "测试", .from = day("2026-01-01"), .to = day("2026-03-31")};
    calendar.closed = {{day("2026-01-15"), "closed"}, {day("2026-02-16"), ""}};
    input_.calendars = {calendar, shipped("us-futures")};
  }

  CommandOutput run(std::vector<std::string> arguments) {
    arguments.insert(arguments.end(), {"--store", "s"});
    return CommandTest::run(arguments);
  }

  static std::string messages(const CommandOutput& output) {
    std::string text;
    for (const std::string& message : output.messages) text += (text.empty() ? "" : "|") + message;
    return text;
  }
};

}  // namespace

TEST_F(StoreCommands, ImportListsWhatItDoesWithEachLine) {
  files_["rules.csv"] =
      rule_columns_line + "copper,0,0,0,16,1,1,1,1,1\r\nCSI 300,0,0,1,1,1,3,5,1,1\r\nnew!,0,0,0,1,1,1,1,1,0\r\n";
  const CommandOutput output = run({"--import", "rules.csv"});
  EXPECT_EQ(output.exit_code, done);
  EXPECT_EQ(output.data,
            "line,what,name,action\r\n2,rule,copper,change\r\n3,rule,CSI 300,leave\r\n4,rule,new!,add\r\n");
  EXPECT_EQ(messages(output),
            "rules.csv:4: the editor would refuse the name \"new!\": it accepts 1 to 63 letters, digits, spaces and "
            "asterisks|1 added, 1 changed, 1 left alone, 0 removed, 0 refused");
  ASSERT_TRUE(output.change);
  ASSERT_EQ(output.change->rules.size(), 2U);
  EXPECT_EQ(output.change->rules[0], (NamedRule{"copper", on_day(16, current_month, true)}));
  EXPECT_EQ(output.change->rules[1].name, "new!");
  EXPECT_FALSE(output.change->settings);
}

TEST_F(StoreCommands, DryRunSaysTheSameAndChangesNothing) {
  files_["rules.csv"] = rule_columns_line + "copper,0,0,0,16,1,1,1,1,1\r\n";
  const CommandOutput real = run({"--import", "rules.csv"});
  const CommandOutput dry = run({"--import", "rules.csv", "--dry-run"});
  EXPECT_EQ(dry.data, real.data);
  EXPECT_EQ(dry.exit_code, done);
  EXPECT_EQ(messages(dry), messages(real) + "|nothing was changed");
  EXPECT_FALSE(dry.change);
}

TEST_F(StoreCommands, OneRefusedLineRefusesTheWholeFile) {
  files_["rules.csv"] = rule_columns_line +
                        "copper,0,0,0,32,1,1,1,1,1\r\nzinc,x,0,0,1,1,1,1,1,1\r\nlead,0,0,0,1,1,1,1,1,1\r\n"
                        "lead,0,0,0,2,1,1,1,1,1\r\n";
  const CommandOutput output = run({"--import", "rules.csv"});
  EXPECT_EQ(output.exit_code, with_differences);
  EXPECT_FALSE(output.change);
  EXPECT_EQ(output.data, "line,what,name,action\r\n2,,,refuse\r\n3,,,refuse\r\n4,rule,lead,add\r\n5,,,refuse\r\n");
  EXPECT_EQ(messages(output),
            "rules.csv:2: expected DayOfMonth from 1 to 31, found 32|"
            "rules.csv:3: expected a whole number of 32 bits as RollOffset, found \"x\"|"
            "rules.csv:5: expected each rule once; \"lead\" is on line 4 already|"
            "1 added, 0 changed, 0 left alone, 0 removed, 3 refused|nothing was changed");
}

TEST_F(StoreCommands, UnchangedImportChangesNothing) {
  files_["rules.csv"] = rule_columns_line + "copper,0,0,0,15,1,1,1,1,1\r\n";
  const CommandOutput output = run({"--import", "rules.csv"});
  EXPECT_EQ(output.exit_code, done);
  EXPECT_FALSE(output.change);
}

TEST_F(StoreCommands, NewStoreIsCreatedByAnImportThatChangesNothing) {
  files_["rules.csv"] = rule_columns_line + "copper,0,0,0,15,1,1,1,1,1\r\n";
  files_["c.csv"] = calendar_known_to("2026-03-31");
  input_.store_is_new = true;
  const CommandOutput output = run({"--import", "rules.csv"});
  EXPECT_EQ(messages(output), "0 added, 0 changed, 1 left alone, 0 removed, 0 refused");
  ASSERT_TRUE(output.change);
  EXPECT_TRUE(output.change->rules.empty());
  EXPECT_TRUE(run({"--import-calendar", "c.csv"}).change);
  EXPECT_FALSE(run({"--import", "rules.csv", "--dry-run"}).change);
  EXPECT_FALSE(run({"--import-calendar", "c.csv", "--dry-run"}).change);
}

TEST_F(StoreCommands, FileWithoutAnyRecordCannotBeUsed) {
  files_["rules.csv"] = "RuleName\r\n";
  EXPECT_EQ(run({"--import", "rules.csv"}).exit_code, unusable_file);
  files_["rules.json"] = "{";
  EXPECT_EQ(run({"--import", "rules.json"}).exit_code, unusable_file);
  EXPECT_EQ(messages(run({"--import", "none.csv"})), "none.csv: the file cannot be read");
  EXPECT_EQ(run({"--import", "none.csv"}).exit_code, unusable_file);
}

TEST_F(StoreCommands, SettingsReplaceTheWholeList) {
  files_["settings.csv"] = setting_columns +
                           "\r\nIF,CSI 300,other,,roll\r\nnew,copper,,,roll\r\n"
                           "CU,copper,test,,roll\r\n";
  const CommandOutput output = run({"--import", "settings.csv", "--what", "settings"});
  EXPECT_EQ(output.exit_code, done);
  EXPECT_EQ(output.data,
            "line,what,name,action\r\n2,setting,IF,change\r\n3,setting,new,add\r\n4,setting,CU,leave\r\n"
            ",setting,other,remove\r\n");
  ASSERT_TRUE(output.change && output.change->settings);
  ASSERT_EQ(output.change->settings->size(), 3U);
  EXPECT_EQ(output.change->settings->at(2), input_.settings[1]);
  EXPECT_TRUE(output.change->rules.empty());
}

TEST_F(StoreCommands, AnotherOrderOfTheSettingsIsAnotherList) {
  input_.settings.resize(2);
  files_["settings.csv"] = setting_columns + "\r\nCU,copper,test,,roll\r\nIF,CSI 300,test,HMUZ,roll\r\n";
  const CommandOutput output = run({"--import", "settings.csv", "--what", "settings"});
  EXPECT_EQ(output.data, "line,what,name,action\r\n2,setting,CU,leave\r\n3,setting,IF,leave\r\n");
  ASSERT_TRUE(output.change && output.change->settings);
  EXPECT_EQ(*output.change->settings, (std::vector<NamedSetting>{input_.settings[1], input_.settings[0]}));
  std::swap(input_.settings[0], input_.settings[1]);
  EXPECT_FALSE(run({"--import", "settings.csv", "--what", "settings"}).change);
}

TEST_F(StoreCommands, ExportIsReadBackUnchanged) {
  for (const std::vector<std::string>& what :
       {std::vector<std::string>{}, {"--what", "rules"}, {"--what", "settings"}}) {
    for (const std::string file : {"all.json", "all.csv"}) {
      std::vector<std::string> command{"--export", file};
      command.insert(command.end(), what.begin(), what.end());
      const CommandOutput exported = run(command);
      ASSERT_TRUE(exported.file);
      EXPECT_EQ(exported.data, "");
      files_[file] = *exported.file;
      command[0] = "--import";
      const CommandOutput imported = run(command);
      EXPECT_EQ(imported.exit_code, done) << file;
      EXPECT_FALSE(imported.change) << "nothing differs";
      EXPECT_NE(imported.data.find("leave"), std::string::npos);
      EXPECT_EQ(imported.data.find("setting,") != std::string::npos,
                what.empty() ? file == "all.json" : what[1] == "settings");
    }
  }
}

TEST_F(StoreCommands, JsonOfOneKindDoesNotSpeakOfTheOther) {
  files_["rules.json"] = *run({"--export", "rules.json", "--what", "rules"}).file;
  EXPECT_EQ(files_["rules.json"].find("settings"), std::string::npos);
  files_["all.json"] = *run({"--export", "all.json"}).file;
  input_.rules.pop_back();
  input_.settings.pop_back();
  const CommandOutput output = run({"--import", "all.json", "--what", "rules"});
  ASSERT_TRUE(output.change);
  EXPECT_FALSE(output.change->settings);
  EXPECT_EQ(output.change->rules.size(), 1U);
}

TEST_F(StoreCommands, NameThatCsvCannotHoldIsNotExported) {
  input_.rules.push_back({"lone \xED\xA0\x80", {}});
  const CommandOutput output = run({"--export", "rules.csv"});
  EXPECT_EQ(output.exit_code, with_differences);
  EXPECT_FALSE(output.file);
  EXPECT_EQ(output.messages.at(0).substr(0, 27), "CSV cannot hold the name \"l");
  EXPECT_TRUE(run({"--export", "rules.json"}).file);
}

TEST_F(StoreCommands, CalendarsAreListed) {
  const std::string data = run({"--calendars"}).data;
  EXPECT_EQ(data.substr(0, data.find('\n')), "name        from        to          closed  title");
  EXPECT_NE(data.find("test        2026-01-01  2026-03-31  2       测试\n"), std::string::npos);
}

TEST_F(StoreCommands, ImportedCalendarShowsTheDaysAndTheDatesThatChange) {
  files_["c.csv"] = "# name: test\n# from: 2026-01-01\n# to: 2026-03-31\ndate,reason\n2026-02-16,\n2026-03-20,Spring\n";
  const CommandOutput output = run({"--import-calendar", "c.csv"});
  EXPECT_EQ(output.exit_code, done);
  EXPECT_EQ(output.data,
            "day,change,reason\r\n"
            "2026-01-15,open,closed\r\n"
            "2026-03-20,closed,Spring\r\n"
            "\r\n"
            "rule,setting,contract,expiration_before,expiration,roll_before,roll\r\n"
            "CSI 300,IF,2026-03,2026-03-20,2026-03-23,2026-03-20,2026-03-23\r\n"
            "copper,CU,2026-01,2026-01-16,2026-01-15,2026-01-16,2026-01-15\r\n");
  EXPECT_EQ(messages(output), "2 days and 2 dates of rules change");
  ASSERT_TRUE(output.change && output.change->calendar);
  EXPECT_EQ(output.change->calendar->closed.size(), 2U);
  const CommandOutput dry = run({"--import-calendar", "c.csv", "--dry-run"});
  EXPECT_EQ(dry.data, output.data);
  EXPECT_FALSE(dry.change);
}

TEST_F(StoreCommands, LongerCalendarMakesDatesKnown) {
  files_["c.csv"] = calendar_known_to("2026-04-30");
  const CommandOutput output = run({"--import-calendar", "c.csv"});
  EXPECT_EQ(output.data,
            "day,change,reason\r\n\r\n"
            "rule,setting,contract,expiration_before,expiration,roll_before,roll\r\n"
            "copper,CU,2026-04,,2026-04-15,,2026-04-15\r\n");
  EXPECT_EQ(messages(output),
            "the calendar test knew the days from 2026-01-01 to 2026-03-31, and now those from 2026-01-01 to "
            "2026-04-30|0 days and 1 dates of rules change");
}

TEST_F(StoreCommands, NewCalendarGivesDatesToTheSettingsThatNameItAlready) {
  input_.settings.push_back({"waits", "copper", "new", "FG"});
  files_["c.csv"] = "# name: new\n# from: 2026-01-01\n# to: 2026-01-31\ndate\n";
  EXPECT_EQ(run({"--import-calendar", "c.csv"}).data,
            "day,change,reason\r\n\r\n"
            "rule,setting,contract,expiration_before,expiration,roll_before,roll\r\n"
            "copper,waits,2026-01,,2026-01-15,,2026-01-15\r\n");
}

TEST_F(StoreCommands, SameCalendarIsLeftAlone) {
  files_["c.csv"] = calendar_known_to("2026-03-31");
  const CommandOutput output = run({"--import-calendar", "c.csv"});
  EXPECT_EQ(messages(output), "the calendar test is the same already");
  EXPECT_FALSE(output.change);
}

TEST_F(StoreCommands, CalendarComesFromEventsWithItsNameAndDays) {
  files_["c.ics"] =
      "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART;VALUE=DATE:20260106\r\nSUMMARY:Epiphany\r\nEND:VEVENT\r\n"
      "END:VCALENDAR\r\n";
  const CommandOutput output =
      run({"--import-calendar", "c.ics", "--name", "new", "--from", "2026-01-01", "--to", "2026-01-31"});
  EXPECT_EQ(output.data.substr(0, output.data.find("\r\n\r\n")), "day,change,reason\r\n2026-01-06,closed,Epiphany");
  EXPECT_EQ(
      messages(output),
      "the calendar new is new and knows the days from 2026-01-01 to 2026-01-31|1 days and 0 dates of rules change");
  ASSERT_TRUE(output.change && output.change->calendar);
  EXPECT_EQ(output.change->calendar->name, "new");

  const CommandOutput nameless = run({"--import-calendar", "c.ics", "--name", "new"});
  EXPECT_EQ(nameless.exit_code, wrong_arguments);
  EXPECT_EQ(messages(nameless), "c.ics: an iCalendar file needs --name, --from, --to");
  files_["c.csv"] = "# name: test\n# from: 2026-01-01\n# to: 2026-03-31\ndate\n";
  EXPECT_EQ(run({"--import-calendar", "c.csv", "--name", "new"}).exit_code, wrong_arguments);
}

TEST_F(StoreCommands, CalendarWithAMistakeIsNotUsed) {
  files_["c.csv"] = "# name: test\n# from: 2026-01-01\n# to: 2026-03-31\ndate\n2026-01-17\n";
  const CommandOutput output = run({"--import-calendar", "c.csv"});
  EXPECT_EQ(output.exit_code, unusable_file);
  EXPECT_EQ(messages(output), "c.csv:5: expected a day that is not on the weekend, found 2026-01-17");
  EXPECT_FALSE(output.change);
}

}  // namespace workbench::schedule
