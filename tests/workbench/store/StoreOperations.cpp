#include "StoreOperations.h"

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

void change_a_rule(RuleStore& store, const StoredRule& old, std::mt19937& random, unsigned number) {
  if (random() % 3 == 0) {
    store.delete_rule(old.number);
    return;
  }
  Rule rule = make_rule(random, number);
  if (random() % 2) rule.name = old.rule.name;
  store.update_rule(old.number, rule, old.revision);
}

}  // namespace

void apply_operation(RuleStore& store, unsigned number) {
  std::mt19937 random(number);
  const std::vector<StoredRule> rules = store.load_rules();
  if (rules.empty() || random() % 5 < 2) {
    store.add_rule(make_rule(random, number));
    return;
  }
  try {
    change_a_rule(store, rules[random() % rules.size()], random, number);
  } catch (const StoreError& error) {
    if (error.kind() != StoreErrorKind::in_use) throw;
  }
}

StoreContent content_before_operations() { return {{{.name = L"used"}, {.name = L"unused"}}, {{L"setting", L"used"}}}; }
