#include "MemoryRuleStore.h"

#include <algorithm>
#include <set>

namespace workbench {

std::vector<StoredRule>::iterator MemoryRuleStore::find_unchanged(long number, std::optional<Revision> expected) {
  const auto found = std::ranges::find(rules_, number, &StoredRule::number);
  if (found == rules_.end()) throw rule_not_found(number);
  if (expected && *expected != found->revision) throw rule_changed(found->rule.name);
  return found;
}

void MemoryRuleStore::refuse_duplicate(const Rule& rule, long number) const {
  for (const StoredRule& other : rules_)
    if (other.number != number && other.rule.name == rule.name) throw duplicate_rule_name(rule.name);
}

std::optional<StoredRule> MemoryRuleStore::try_load_rule(long number) {
  const auto found = std::ranges::find(rules_, number, &StoredRule::number);
  return found == rules_.end() ? std::nullopt : std::optional(*found);
}

StoredRule MemoryRuleStore::add_rule(const Rule& rule) {
  refuse_invalid(rule);
  refuse_duplicate(rule, 0);
  StoredRule added{last_number_ + 1, 1, rule};
  rules_.push_back(added);
  ++last_number_;
  notify_subscribers();
  return added;
}

StoredRule MemoryRuleStore::update_rule(long number, const Rule& rule, std::optional<Revision> expected) {
  refuse_invalid(rule);
  const auto found = find_unchanged(number, expected);
  refuse_duplicate(rule, number);
  StoredRule updated{number, found->revision + 1, rule};
  std::vector<SymbolSourceSetting> settings = settings_;
  for (SymbolSourceSetting& setting : settings)
    if (setting.rule_name == found->rule.name) setting.rule_name = rule.name;
  StoredRule kept = updated;
  std::swap(*found, kept);
  settings_.swap(settings);
  notify_subscribers();
  return updated;
}

void MemoryRuleStore::delete_rule(long number, std::optional<Revision> expected) {
  const auto found = find_unchanged(number, expected);
  if (std::ranges::find(settings_, found->rule.name, &SymbolSourceSetting::rule_name) != settings_.end())
    throw rule_in_use(found->rule.name);
  rules_.erase(found);
  notify_subscribers();
}

void MemoryRuleStore::replace_settings(const std::vector<SymbolSourceSetting>& settings) {
  for (const SymbolSourceSetting& setting : settings) refuse_invalid(setting);
  settings_ = settings;
  notify_subscribers();
}

void MemoryRuleStore::replace_content(const StoreContent& content) {
  std::set<std::wstring> names;
  std::vector<StoredRule> rules;
  long number = last_number_;
  for (const Rule& rule : content.rules) {
    refuse_invalid(rule);
    if (!names.insert(rule.name).second) throw duplicate_rule_name(rule.name);
    rules.push_back({++number, 1, rule});
  }
  for (const SymbolSourceSetting& setting : content.settings) refuse_invalid(setting);
  settings_ = content.settings;
  rules_ = std::move(rules);
  last_number_ = number;
  notify_subscribers();
}

}  // namespace workbench
