#include <algorithm>
#include <set>

#include "FailingNew.h"
#include "FaultLoop.h"
#include "LookupTest.h"

namespace list_test {
namespace {

using testing::AnyOfArray;
using testing::Contains;
using testing::Each;
using testing::ElementsAre;

constexpr long named_id = 5;
constexpr wchar_t rule_name[] = L"a name that is too long for a string itself";

const Names all_users = {L"the first setting, too long for a string", L"the second setting, too long for a string",
                         L"the third setting, too long for a string"};

std::string out_of_memory(const char* function, int line) {
  const std::string number = std::to_string(line);
  return "TRACE std::exception - std::bad_alloc; FILE - ExpirationRulesListDialog.cpp, LINE - " + number +
         " | ExpirationRulesListDialog.cpp:" + number + ' ' + function;
}

/// Rule 5 is used by every setting. All names are too long for a string without memory of its own.
class LookupMemory : public LookupTest {
 protected:
  LookupMemory() {
    host.rules() = {{4, L"TF"}, {named_id, rule_name}};
    for (const std::wstring& setting : all_users) host.settings().push_back({setting, rule_name});
  }

  /// Runs `lookup` again and again, each time with another allocation failing, the host's among them, and calls `check`
  /// after each run.
  template <class Lookup, class Check>
  void fail_each_allocation_of(const Lookup& lookup, const Check& check) {
    test_support::fail_each_allocation([&](std::size_t number) {
      recorder.reset();
      bool failed = false;
      {
        const test_support::FailingNew memory(number);
        EXPECT_NO_THROW(lookup());
        failed = memory.has_failed();
      }
      check(failed);
      return failed;
    });
  }
};

TEST_F(LookupMemory, ThatFailsForANameIsReportedAndGivesNone) {
  std::set<std::string> reported;
  _bstr_t name;
  fail_each_allocation_of([&] { name = dialog.expiration_rule_name(named_id); },
                          [&](bool failed) {
                            for (const std::string& report : reports()) reported.insert(report);
                            EXPECT_TRUE(name == _bstr_t(rule_name) || (failed && name.length() == 0));
                            EXPECT_TRUE(reports().empty() || name.length() == 0);
                          });
  EXPECT_STREQ(rule_name, name);
  EXPECT_THAT(reported, Contains(out_of_memory("expiration_rule_name", 175)));
}

TEST_F(LookupMemory, ThatFailsForUsersIsReportedAndKeepsThoseFoundUntilThen) {
  std::set<std::size_t> found_until_then;
  Names users;
  bool in_use = false;
  fail_each_allocation_of([&] { in_use = dialog.is_expiration_rule_uses(named_id, users); },
                          [&](bool) {
                            EXPECT_EQ(!users.empty(), in_use);
                            EXPECT_THAT(users, Each(AnyOfArray(all_users)));
                            if (reports().empty()) return;  // the host has failed at a call that is not looked at
                            ASSERT_LE(users.size(), all_users.size());
                            EXPECT_TRUE(std::equal(users.begin(), users.end(), all_users.begin()));
                            if (reports().back() == out_of_memory("is_expiration_rule_uses", 154)) {
                              found_until_then.insert(users.size());
                            }
                          });
  EXPECT_EQ(all_users, users);
  EXPECT_THAT(found_until_then, ElementsAre(0, 1, 2));
}

}  // namespace
}  // namespace list_test
