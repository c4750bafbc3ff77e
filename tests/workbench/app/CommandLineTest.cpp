#include <gtest/gtest.h>

#include <ostream>

#include "CommandLine.h"
#include "resource.h"

namespace workbench {
namespace {

using Arguments = std::vector<std::wstring>;

struct Accepted {
  const char* name;
  Arguments arguments;
  CommandLine expected;
};

void PrintTo(const Accepted& parameter, std::ostream* out) { *out << parameter.name; }

class AcceptedCommandLine : public testing::TestWithParam<Accepted> {};

TEST_P(AcceptedCommandLine, IsReadAsMeant) {
  EXPECT_TRUE(parse_command_line(GetParam().arguments) == GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, AcceptedCommandLine,
    testing::Values(Accepted{"NoArgumentsRun", {}, {}},
                    Accepted{"Store", {L"--store", L"a b.db"}, {.store = L"a b.db"}},
                    Accepted{"Module", {L"--module", L"C:\\x\\规则.dll"}, {.module = L"C:\\x\\规则.dll"}},
                    Accepted{"PrintRules", {L"--print-rules"}, {.action = CommandLine::Action::print_rules}},
                    Accepted{"Help", {L"--help"}, {.action = CommandLine::Action::help}},
                    Accepted{"Version", {L"--version"}, {.action = CommandLine::Action::version}},
                    Accepted{"Show", {L"--show", L"2147483647"}, {.shown_rule = 2147483647}},
                    Accepted{"Language", {L"--language", L"zh"}, {}},
                    Accepted{"LastStoreCounts", {L"--store", L"one", L"--store", L"two"}, {.store = L"two"}},
                    Accepted{"OrderDoesNotMatter",
                             {L"--print-rules", L"--store", L"x"},
                             {.action = CommandLine::Action::print_rules, .store = L"x"}}),
    [](const auto& test) { return test.param.name; });

struct Refused {
  const char* name;
  Arguments arguments;
  UINT message;
  std::wstring argument;
};

void PrintTo(const Refused& parameter, std::ostream* out) { *out << parameter.name; }

class RefusedCommandLine : public testing::TestWithParam<Refused> {};

TEST_P(RefusedCommandLine, NamesTheArgument) {
  try {
    parse_command_line(GetParam().arguments);
    FAIL() << "accepted";
  } catch (const CommandLineError& error) {
    EXPECT_EQ(error.message, GetParam().message);
    EXPECT_EQ(error.argument, GetParam().argument);
  }
}

INSTANTIATE_TEST_SUITE_P(
    CommandLine, RefusedCommandLine,
    testing::Values(Refused{"UnknownOption", {L"--colour"}, IDS_UNKNOWN_ARGUMENT, L"--colour"},
                    Refused{"BareWord", {L"rules.db"}, IDS_UNKNOWN_ARGUMENT, L"rules.db"},
                    Refused{"EmptyArgument", {L""}, IDS_UNKNOWN_ARGUMENT, L""},
                    Refused{"StoreWithoutValue", {L"--store"}, IDS_MISSING_VALUE, L"--store"},
                    Refused{"StoreWithEmptyValue", {L"--store", L""}, IDS_MISSING_VALUE, L"--store"},
                    Refused{"OptionInPlaceOfValue", {L"--module", L"--help"}, IDS_MISSING_VALUE, L"--module"},
                    Refused{"RuleNumberZero", {L"--show", L"0"}, IDS_BAD_RULE_NUMBER, L"0"},
                    Refused{"NegativeRuleNumber", {L"--show", L"-1"}, IDS_BAD_RULE_NUMBER, L"-1"},
                    Refused{"RuleNumberTooGreat", {L"--show", L"2147483648"}, IDS_BAD_RULE_NUMBER, L"2147483648"},
                    Refused{"RuleNumberWithTail", {L"--show", L"7x"}, IDS_BAD_RULE_NUMBER, L"7x"},
                    Refused{"UnknownLanguage", {L"--language", L"fr"}, IDS_BAD_LANGUAGE, L"fr"}),
    [](const auto& test) { return test.param.name; });

TEST(CommandLine, LanguageIsFoundBesideInvalidArguments) {
  EXPECT_EQ(try_find_language(Arguments{L"--colour", L"--language", L"zh"}), Language::chinese);
  EXPECT_EQ(try_find_language(Arguments{L"--language", L"zh", L"--language", L"en"}), Language::english);
  EXPECT_EQ(try_find_language(Arguments{L"--language", L"fr"}), std::nullopt);
  EXPECT_EQ(try_find_language(Arguments{L"--language"}), std::nullopt);
  EXPECT_EQ(try_find_language(Arguments{}), std::nullopt);
}

TEST(CommandLine, LanguageIsTakenOutOfTheArgumentsOfACommand) {
  EXPECT_EQ(without_language(Arguments{L"--language", L"en", L"--schedule", L"gold", L"--language", L"zh"}),
            (Arguments{L"--schedule", L"gold"}));
  EXPECT_THROW(without_language(Arguments{L"--language", L"fr"}), CommandLineError);
  EXPECT_THROW(without_language(Arguments{L"--schedule-all", L"--language"}), CommandLineError);
}

TEST(CommandLine, ProcessArgumentsLeaveOutTheProgram) {
  for (const std::wstring& argument : process_arguments()) EXPECT_EQ(argument.find(L".exe"), std::wstring::npos);
}

}  // namespace
}  // namespace workbench
