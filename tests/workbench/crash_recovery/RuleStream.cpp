#include "RuleStream.h"

#include <algorithm>
#include <random>

using namespace workbench;

namespace {

Rule make_rule(std::mt19937& random, unsigned number) {
  Rule rule{.name = L"rule " + std::to_wstring(number)};
  for (const RuleColumn& column : rule_columns)
    rule.*column.value =
        column.least + static_cast<long>(random() % static_cast<unsigned>(column.greatest - column.least + 1));
  return rule;
}

/// Half of the changes are to the oldest rules: settings use those, and a new name of theirs is written to two tables.
const StoredRule& choose_rule(const std::vector<StoredRule>& rules, std::mt19937& random) {
  constexpr std::size_t oldest = 40;
  const std::size_t choice = random() % 2 ? rules.size() : std::min(rules.size(), oldest);
  return rules[random() % choice];
}

}  // namespace

StreamChange choose_change(const std::vector<StoredRule>& rules, unsigned number) {
  std::mt19937 random(number);
  if (rules.empty() || random() % 5 < 2) return {.kind = StreamChange::Kind::add, .rule = make_rule(random, number)};
  const StoredRule& old = choose_rule(rules, random);
  if (random() % 3 == 0) return {.kind = StreamChange::Kind::remove, .old = old};
  StreamChange update{StreamChange::Kind::update, old, make_rule(random, number)};
  if (random() % 2) update.rule.name = old.rule.name;
  return update;
}
