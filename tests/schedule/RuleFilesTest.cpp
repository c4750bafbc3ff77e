#include "ImportPlan.h"
#include "RuleFiles.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

const std::string header = rule_columns + "\r\n";
const std::string lone_surrogate = "\xED\xA0\x80";

std::vector<NamedRule> rules_of(const RuleFile& file) {
  EXPECT_EQ(messages_of(file.mistakes), "");
  std::vector<NamedRule> rules;
  for (const Lined<NamedRule>& lined : file.rules.value()) rules.push_back(lined.item);
  return rules;
}

std::vector<NamedSetting> settings_of(const RuleFile& file) {
  EXPECT_EQ(messages_of(file.mistakes), "");
  std::vector<NamedSetting> settings;
  for (const Lined<NamedSetting>& lined : file.settings.value()) settings.push_back(lined.item);
  return settings;
}

const std::vector<NamedRule> some_rules{
    {"CSI 300", on_weekday(3, 5, current_month, true)},
    {"a,\"b\"\r\nc\td", less(on_day(1, next_month), 99, in_calendar_days)},
    {"\xE6\xB2\xAA\xF0\x9F\x98\x80", {-1, 2147483647, -2147483647 - 1, 0, 0, 0, 0, 0, 7}},
};
const std::vector<NamedSetting> some_settings{
    {"IF", "CSI 300", "china-futures", "HMUZ", true}, {"IF", ""}, {" =\"x\"", "no such rule", "", "F", false}};

std::string write_csv(const std::vector<NamedRule>& rules) {
  std::string refused;
  return write_rules_csv(rules, refused).value();
}

}  // namespace

TEST(RuleFiles, CsvRoundTripIsExact) {
  EXPECT_EQ(rules_of(read_rules_csv(write_csv(some_rules))), some_rules);
  std::string refused;
  const std::string settings = write_settings_csv(some_settings, refused).value();
  EXPECT_EQ(settings_of(read_settings_csv(settings)), some_settings);
  EXPECT_EQ(write_csv(some_rules).substr(0, header.size() + 29), header + "CSI 300,0,0,1,1,1,3,5,1,1\r\n\"a");
}

TEST(RuleFiles, CsvRefusesWhatUtf8CannotHold) {
  std::string refused;
  EXPECT_EQ(write_rules_csv(std::vector<NamedRule>{{lone_surrogate, {}}}, refused), std::nullopt);
  EXPECT_EQ(refused, lone_surrogate);
  EXPECT_EQ(write_settings_csv(std::vector<NamedSetting>{{"a", lone_surrogate}}, refused), std::nullopt);
}

TEST(RuleFiles, JsonRoundTripIsExact) {
  std::vector<NamedRule> rules = some_rules;
  // Lone surrogates in each position, a null, the character that the reader uses itself, and text like escapes.
  for (const std::string& name :
       {lone_surrogate, "a" + lone_surrogate + "b", std::string("\xED\xB0\x80\xED\xA0\x80", 6), std::string("a\0b", 3),
        std::string("\xEE\x83\xB0"),
        "\xEE\x83\xB0"
        "D800" +
            lone_surrogate,
        std::string("\\uD800"), std::string("\\\\u\"\x7F/")})
    rules.push_back({name, {}});
  const RuleFile file = read_rules_json(write_rules_json(rules, some_settings));
  EXPECT_EQ(rules_of(file), rules);
  EXPECT_EQ(settings_of(file), some_settings);
  EXPECT_NE(write_rules_json(rules, std::nullopt).find("\"\\uD800\""), std::string::npos);
}

TEST(RuleFiles, JsonMayHoldOneKindAlone) {
  const RuleFile file = read_rules_json(R"({"settings": []})");
  EXPECT_EQ(messages_of(file.mistakes), "");
  EXPECT_FALSE(file.rules.has_value());
  EXPECT_TRUE(file.settings.has_value());
}

TEST(RuleFiles, JsonEscapesOfPairsAreCharacters) {
  const RuleFile file = read_rules_json(
      R"({"settings": [{"SettingName": "\ud83d\ude00\uE0F0D800", "RuleName": "", "Calendar": "", "Months": "",
                                             "LastTradingDay": "roll"}]})");
  EXPECT_EQ(settings_of(file).at(0).name,
            "\xF0\x9F\x98\x80\xEE\x83\xB0"
            "D800");
}

TEST(RuleFiles, EveryColumnOfARuleIsRequired) {
  const RuleFile file = read_rules_csv(with(header + "a,0,0,0,1,1,1,1,1,0\r\n", "RollOffset", "RollOfset"));
  EXPECT_EQ(messages_of(file.mistakes), "f:1: expected a column RollOffset\n");
  EXPECT_EQ(file.ignored_columns, std::vector<std::string>{"RollOfset"});
}

TEST(RuleFiles, EveryColumnOfASettingIsRequired) {
  const std::string expected =
      "f:1: expected a column Calendar\nf:1: expected a column Months\nf:1: expected a column LastTradingDay\n";
  const RuleFile file = read_settings_csv("SettingName,RuleName\ns,r\n");
  EXPECT_EQ(messages_of(file.mistakes), expected);
  EXPECT_TRUE(file.settings->empty());
  EXPECT_EQ(messages_of(read_rules_json(R"({"settings": [{"SettingName": "s", "RuleName": "r"}]})").mistakes),
            expected);
}

TEST(RuleFiles, OtherColumnsAreIgnoredWithANote) {
  const RuleFile file = read_settings_csv("Colour,RuleName,SettingName,Months,LastTradingDay,Calendar\nred,r,s,,,\n");
  EXPECT_EQ(settings_of(file), (std::vector<NamedSetting>{{"s", "r"}}));
  EXPECT_EQ(file.ignored_columns, std::vector<std::string>{"Colour"});
}

TEST(RuleFiles, MistakesInCsvAreReportedWithTheirLines) {
  EXPECT_EQ(messages_of(read_rules_csv(header + ",0,0,0,1,1,1,1,1,0\n" + "a,x,2147483648,,1,1,1,1,1, 0\n").mistakes),
            "f:2: expected a name of 1 to 255 characters, found \"\"\n"
            "f:3: expected a whole number of 32 bits as RollOffset, found \"x\"\n"
            "f:3: expected a whole number of 32 bits as DayType, found \"2147483648\"\n"
            "f:3: expected a whole number of 32 bits as DayMode, found \"\"\n"
            "f:3: expected a whole number of 32 bits as MoveToNextTradingDay, found \" 0\"\n");
  EXPECT_EQ(messages_of(read_settings_csv(setting_columns + "\ns,r,a/b,MH,never\n").mistakes),
            "f:2: expected a name of 1 to 255 characters that is not the name of a file, found \"a/b\"\n"
            "f:2: expected ascending letters of delivery months like HMUZ, or none; found \"MH\"\n"
            "f:2: expected \"roll\" or \"expiration\", found \"never\"\n");
}

TEST(RuleFiles, MistakesInJsonAreReportedWithTheirLines) {
  const auto mistakes = [](std::string_view text) { return messages_of(read_rules_json(text).mistakes); };
  const std::string form = "expected JSON like {\"rules\": [{\"RuleName\": ...}], \"settings\": [...]}\n";
  EXPECT_EQ(mistakes(""), "f:1: " + form);
  EXPECT_EQ(mistakes("{\n\"rules\":\n[,]}"), "f:3: " + form);
  EXPECT_EQ(mistakes("[]"), "f:1: " + form);
  EXPECT_EQ(mistakes("{\"rules\": 1}"), "f:1: " + form);
  EXPECT_EQ(mistakes("{\"rules\": {}}"), "f:1: " + form);
  EXPECT_EQ(mistakes("{\"rules\": [[]]}"), "f:1: " + form);
  EXPECT_EQ(mistakes("{\"other\": []}"), "f:1: " + form);
  EXPECT_EQ(mistakes("{\"settings\": [\n{\"SettingName\": [\"s\"]}]}"), "f:2: " + form);
  EXPECT_EQ(mistakes("{\"settings\": []}\n x"), "f:2: " + form);
  EXPECT_EQ(mistakes("{\"settings\": [],\n\"settings\": []}"), "f:2: expected the column settings only once\n");
  EXPECT_EQ(mistakes("{\"settings\": [\n\n{\"SettingName\": \"s\"}\n]}"),
            "f:3: expected a column RuleName\nf:3: expected a column Calendar\nf:3: expected a column Months\n"
            "f:3: expected a column LastTradingDay\n");
  EXPECT_EQ(mistakes("{\"settings\": [{\"SettingName\": \"s\",\n\"SettingName\": \"s\"}]}"),
            "f:2: expected the column SettingName only once\n");
  EXPECT_EQ(mistakes("{\"settings\": [\n{\"SettingName\": 5}]}"), "f:2: expected a text as SettingName, found 5\n");
  EXPECT_EQ(mistakes("{\"rules\": [\n{\"RollOffset\": \"5\"}]}"),
            "f:2: expected a whole number of 32 bits as RollOffset, found \"5\"\n");
  EXPECT_EQ(mistakes("{\"rules\": [\n{\"RollOffset\": 5.0}]}"),
            "f:2: expected a whole number of 32 bits as RollOffset, found \"5.0\"\n");
  EXPECT_EQ(mistakes("{\"settings\": [{\"SettingName\": \"\n\xFF\"}]}"),
            "f:2: expected UTF-8, or UTF-16 with a byte order mark: save as UTF-8\n");
}

TEST(RuleFiles, NamesHaveTheLengthThatAStoreKeeps) {
  EXPECT_EQ(utf16_length("a\xE6\xB2\xAA\xF0\x9F\x98\x80" + lone_surrogate), 5U);
  const std::string longest(255, 'x');
  const std::string columns = setting_columns + "\n";
  EXPECT_EQ(messages_of(read_settings_csv(columns + longest + ",,,,\n").mistakes), "");
  EXPECT_EQ(read_settings_csv(columns + longest + "x,,,,\n").mistakes.size(), 1U);
}

TEST(ImportPlan, SaysWhatIsAddedChangedAndLeft) {
  const std::vector<NamedRule> stored{{"same", on_day(1)}, {"other", on_day(2)}, {"not in the file", on_day(3)}};
  const std::vector<NamedRule> imported{
      {"same", on_day(1)}, {"other", on_day(4)}, {"new", on_day(5)}, {"\xE6\xB2\xAA", on_day(6)}};
  const ImportPlan plan = plan_import(read_rules_csv(write_csv(imported)), {stored, some_settings});
  EXPECT_EQ(messages_of(plan.refused), "");
  ASSERT_EQ(plan.rules.size(), 4U);
  EXPECT_EQ(plan.rules[0].action, ImportAction::leave);
  EXPECT_EQ(plan.rules[1].action, ImportAction::change);
  EXPECT_EQ(plan.rules[2].action, ImportAction::add);
  EXPECT_EQ(plan.rules[2].line, 4U);
  EXPECT_EQ(plan.rules[3].action, ImportAction::add);
  EXPECT_TRUE(plan.changes_anything);
  EXPECT_FALSE(plan.settings.has_value()) << "a file of rules leaves the settings alone";
  EXPECT_EQ(messages_of(plan.warnings),
            "f:5: the editor would refuse the name \"\xE6\xB2\xAA\": it accepts 1 to 63 letters, digits, spaces and "
            "asterisks\n");
}

TEST(ImportPlan, RefusesRepeatedNamesAndValuesThatNoStoreKeeps) {
  const std::string text =
      header + "a,0,0,0,1,1,1,1,1,0\nb,100,0,0,0,1,1,1,1,2\na,0,0,0,2,1,1,1,1,0\nc,x,0,0,1,1,1,1,1,0\n";
  EXPECT_EQ(messages_of(plan_import(read_rules_csv(text), {}).refused),
            "f:3: expected RollOffset from 0 to 99, found 100\n"
            "f:3: expected DayOfMonth from 1 to 31, found 0\n"
            "f:3: expected MoveToNextTradingDay from 0 to 1, found 2\n"
            "f:4: expected each rule once; \"a\" is on line 2 already\n"
            "f:5: expected a whole number of 32 bits as RollOffset, found \"x\"\n");
}

TEST(ImportPlan, SettingsReplaceTheWholeList) {
  const std::vector<NamedSetting> stored{{"IF", "a"}, {"IF", "b"}, {"CL", "c"}};
  const RuleFile file = read_settings_csv(setting_columns + "\nIF,a,,,\nIF,x,,,\nIF,y,,,\n");
  const ImportPlan plan = plan_import(file, {.settings = stored});
  ASSERT_TRUE(plan.settings.has_value());
  ASSERT_EQ(plan.settings->size(), 3U);
  EXPECT_EQ(plan.settings->at(0).action, ImportAction::leave);
  EXPECT_EQ(plan.settings->at(1).action, ImportAction::change);
  EXPECT_EQ(plan.settings->at(2).action, ImportAction::add);
  EXPECT_EQ(plan.removed_settings, (std::vector<NamedSetting>{{"CL", "c"}}));
}

TEST(ImportPlan, WarnsOfSettingsThatNameWhatDoesNotExist) {
  const std::string text = setting_columns + "\na,stored,test,,\nb,none,,,\nc,,moon,,\nd,new,,,\n";
  RuleFile file = read_settings_csv(text);
  file.rules = {{7, {"new", on_day(1)}}};
  const std::vector<NamedRule> stored{{"stored", on_day(1)}};
  const std::vector<Calendar> calendars{{.name = "test"}};
  const ImportPlan plan = plan_import(file, {stored, {}, calendars});
  EXPECT_EQ(messages_of(plan.warnings),
            "f:3: the setting \"b\" uses the rule \"none\", which does not exist\n"
            "f:4: the setting \"c\" names the calendar \"moon\", which does not exist\n");
  EXPECT_TRUE(plan.refused.empty());
  EXPECT_EQ(plan.settings->size(), 4U);
}

TEST(EditedName, IsWhatTheEditorAccepts) {
  for (const std::string& name :
       {std::string(" "), std::string("A*B 9"), std::string("\t\n\v\f\r"), std::string(63, 'x')})
    EXPECT_TRUE(is_edited_name(name)) << name;
  for (const std::string& name : {std::string(), std::string("A-B"), std::string("A_B"), std::string("A.B"),
                                  std::string("\xE6\xB2\xAA"), std::string(64, 'x'), std::string(1, '\0')})
    EXPECT_FALSE(is_edited_name(name)) << name;
}

}  // namespace workbench::schedule
