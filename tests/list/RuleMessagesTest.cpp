#include <gmock/gmock.h>

#include "RuleMessages.h"

namespace zd_expiration_rule_plugin {
namespace {

struct UsersCase {
  const char* name;
  std::vector<std::wstring> users;
  const wchar_t* text;
};

class RuleInUseText : public testing::TestWithParam<UsersCase> {};

TEST_P(RuleInUseText, NamesUpToThreeUsers) { EXPECT_EQ(GetParam().text, rule_in_use_text(L"no:", GetParam().users)); }

INSTANTIATE_TEST_SUITE_P(
    All, RuleInUseText,
    testing::Values(UsersCase{"One", {L"a"}, L"no:\na"}, UsersCase{"Two", {L"b", L"a"}, L"no:\nb, a"},
                    UsersCase{"Three", {L"a", L"b", L"c"}, L"no:\na, b, c"},
                    UsersCase{"Four", {L"a", L"b", L"c", L"d"}, L"no:\na, b, c ...\n"},
                    UsersCase{"Five", {L"a", L"a", L"c", L"d", L"e"}, L"no:\na, a, c ...\n"},
                    UsersCase{"Empty", {L"", L""}, L"no:\n, "},
                    UsersCase{"Formats", {L"%s", L"%n", L"\"100%\""}, L"no:\n%s, %n, \"100%\""},
                    UsersCase{"Surrogates", {L"\U0001F4C8", L"\xD800"}, L"no:\n\U0001F4C8, \xD800"}),
    [](const auto& test) { return test.param.name; });

TEST(RuleInUseText, GoesOnAfterANameWithANullInside) {
  EXPECT_EQ(L"no:\na, b, c ...\n", rule_in_use_text(L"no:", {std::wstring(L"a\0x", 3), L"b", L"c", L"d"}));
}

struct NameCase {
  const char* name;
  std::wstring rule_name;
};

class ConfirmDeleteText : public testing::TestWithParam<NameCase> {};

TEST_P(ConfirmDeleteText, HoldsTheNameAsItIs) {
  EXPECT_EQ(L"delete \"" + GetParam().rule_name + L"\"?", confirm_delete_text(L"delete \"%s\"?", GetParam().rule_name));
}

INSTANTIATE_TEST_SUITE_P(All, ConfirmDeleteText,
                         testing::Values(NameCase{"Plain", L"IF"}, NameCase{"Empty", L""},
                                         NameCase{"Quotes", L"a \"quoted\" name"}, NameCase{"TextFormat", L"%s"},
                                         NameCase{"SeveralFormats", L"%s%s%d%%"}, NameCase{"WritingFormat", L"%n"},
                                         NameCase{"Longest", std::wstring(63, L'字')},
                                         NameCase{"Surrogates", L"\U0001F4C8\U00020000"},
                                         NameCase{"LoneSurrogate", L"a\xD83D"}, NameCase{"LineEnd", L"a\nb"}),
                         [](const auto& test) { return test.param.name; });

TEST(ConfirmDeleteText, ClosesTheQuestionAfterANameWithANullInside) {
  EXPECT_EQ(L"delete \"a\"?", confirm_delete_text(L"delete \"%s\"?", std::wstring(L"a\0b", 3)));
}

}  // namespace
}  // namespace zd_expiration_rule_plugin
