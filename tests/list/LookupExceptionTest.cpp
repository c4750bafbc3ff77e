#include "ImportProbe.h"
#include "LookupTest.h"
#include "RaisedException.h"

ZD_IMPORT_PROBE(CoCreateInstance, CreationProbe);

namespace list_test {
namespace {

using test_support::RaisedException;
using testing::ElementsAre;

/// A rule that is in use, and an exception that is raised where the host's objects are created.
class LookupException : public LookupTest, public testing::WithParamInterface<RaisedException> {
 protected:
  LookupException() {
    host.rules() = {{rule_id, L"IF"}};
    host.settings() = {{L"a", L"IF"}};
  }

  /// Raises the exception from the creation with this number on, counted from 1.
  void raise_from(int number) {
    creations.replace([this, number](const auto&... arguments) {
      if (creations.calls() >= number) GetParam().raise();
      return creations.original(arguments...);
    });
  }

  static std::string traced(int line, const char* function) {
    return test_support::traced(GetParam(), "ExpirationRulesListDialog.cpp", line, function);
  }

  CreationProbe creations;
};

TEST_P(LookupException, IsTracedAndGivesNoName) {
  raise_from(1);
  EXPECT_EQ("", name_of(rule_id));
  EXPECT_THAT(reports(), ElementsAre(traced(175, "expiration_rule_name")));
}

TEST_P(LookupException, IsTracedAndFindsNoUsers) {
  raise_from(3);  // a table and a filter are created for the rule's name
  Names users;
  EXPECT_FALSE(dialog.is_expiration_rule_uses(rule_id, users));
  EXPECT_THAT(reports(), ElementsAre(traced(154, "is_expiration_rule_uses")));
}

INSTANTIATE_TEST_SUITE_P(All, LookupException, testing::ValuesIn(test_support::raised_exceptions),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace list_test
