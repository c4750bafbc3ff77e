// Every command says how far it has come, and can be cancelled each time it does, with nothing half done.
#include "CommandTest.h"

namespace workbench::schedule {

namespace {

struct Command {
  const char* name;
  std::vector<std::string> arguments;
};

void PrintTo(const Command& command, std::ostream* stream) { *stream << command.name; }

class Cancellation : public CommandTest, public testing::WithParamInterface<Command> {
 protected:
  Cancellation() {
    files_ = {
        {"rules.csv", rule_columns + "\nCSI 300,0,0,1,1,1,3,5,1,1\ncopper,0,0,0,16,1,1,1,1,1\n"},
        {"settings.csv", setting_columns + "\nIF,copper,test,,\nnew,copper,,,\n"},
        {"all.json", R"({"settings": [{"SettingName": "s", "RuleName": "", "Calendar": "", "Months": "",)"
                     R"( "LastTradingDay": ""}]})"},
        {"list.csv", "rule,contract,date\nCSI 300,2026-01,2026-01-16\ncopper,2026-01,2026-01-16\n"},
        {"dates.csv", "contract,date\n2026-01,2026-01-16\n2026-02,2026-02-20\n"},
        {"calendar.csv", "# name: test\n# from: 2026-01-01\n# to: 2026-03-31\ndate\n2026-01-16\n"},
        {"events.ics", "BEGIN:VCALENDAR\nBEGIN:VEVENT\nDTSTART;VALUE=DATE:20260116\nEND:VEVENT\nEND:VCALENDAR\n"}};
    input_.rules = {{"CSI 300", on_weekday(3, 5, current_month, true)}, {"copper", on_day(15, current_month, true)}};
    input_.settings = {{"IF", "CSI 300", "test"}, {"CU", "copper", "test"}};
    input_.calendars = {Calendar{.name = "test", .from = day("2026-01-01"), .to = day("2026-03-31")}};
    input_.today = day("2026-01-10");
  }

  CommandOutput run(const Progress& progress) {
    input_.progress = progress;
    return CommandTest::run(GetParam().arguments);
  }
};

std::vector<Command> commands() {
  const auto all = [](const char* format) {
    return std::vector<std::string>{"--rules", "rules.csv", "--schedule-all", "--calendar", "test", "--format", format};
  };
  const auto find = [](const char* format) {
    return std::vector<std::string>{"--find-rule", "dates.csv", "--calendar", "test", "--format", format};
  };
  return {{"schedule_table", all("table")},
          {"schedule_csv", all("csv")},
          {"schedule_json", all("json")},
          {"schedule_events", all("ics")},
          {"schedule_page", all("html")},
          {"schedule_settings", {"--store", "s", "--schedule-all"}},
          {"check", {"--store", "s", "--check", "list.csv"}},
          {"check_with_a_file", {"--rules", "rules.csv", "--check", "list.csv", "--calendar", "calendar.csv"}},
          {"schedule_with_a_file", {"--rules", "rules.csv", "--schedule-all", "--calendar", "calendar.csv"}},
          {"find_with_a_file", {"--find-rule", "dates.csv", "--calendar", "calendar.csv"}},
          {"find_table", find("table")},
          {"find_csv", find("csv")},
          {"find_json", find("json")},
          {"import_rules", {"--store", "s", "--import", "rules.csv"}},
          {"import_settings", {"--store", "s", "--import", "settings.csv", "--what", "settings"}},
          {"import_json", {"--store", "s", "--import", "all.json"}},
          {"export_rules", {"--store", "s", "--export", "out.csv"}},
          {"export_settings", {"--store", "s", "--export", "out.csv", "--what", "settings"}},
          {"export_json", {"--store", "s", "--export", "out.json"}},
          {"import_calendar", {"--store", "s", "--import-calendar", "calendar.csv"}},
          {"import_events",
           {"--store", "s", "--import-calendar", "events.ics", "--name", "test", "--from", "2026-01-01", "--to",
            "2026-03-31"}}};
}

}  // namespace

INSTANTIATE_TEST_SUITE_P(Commands, Cancellation, testing::ValuesIn(commands()),
                         [](const auto& command) { return std::string(command.param.name); });

TEST_P(Cancellation, LeavesNothingHalfDoneWheneverItHappens) {
  std::size_t calls = 0;
  double share = 0;
  const CommandOutput whole = run([&](std::size_t done, std::size_t all) {
    const double now = static_cast<double>(done) / static_cast<double>(all);
    EXPECT_GE(now, share - 1e-9) << "at call " << calls;
    EXPECT_LE(now, 1.0) << "at call " << calls;
    share = now;
    ++calls;
    return true;
  });
  EXPECT_LE(whole.exit_code, with_differences);
  EXPECT_FALSE(whole.data.empty() && !whole.file);
  EXPECT_GT(calls, 1U) << "it says how far it has come";
  for (std::size_t last = 1; last <= calls; ++last) {
    std::size_t left = last;
    const CommandOutput cancelled = run([&](std::size_t, std::size_t) { return --left > 0; });
    ASSERT_EQ(cancelled.exit_code, not_started) << last;
    ASSERT_EQ(cancelled.messages.back(), "cancelled; nothing was changed") << last;
    ASSERT_TRUE(cancelled.data.empty() && !cancelled.file && !cancelled.change) << last;
  }
}

}  // namespace workbench::schedule
