#include "PresetRuleStore.h"

#include <algorithm>
#include <map>

namespace test_support {

using workbench::MemoryRuleStore;
using workbench::Revision;
using workbench::Rule;
using workbench::StoredRule;
using workbench::StoredSetting;

namespace {

const Rule& content_of(const HostRule& rule) { return rule; }

}  // namespace

void PresetRuleStore::take_over() {
  if (!std::ranges::equal(settings_, content_.settings, {}, &StoredSetting::setting)) {
    settings_.clear();
    for (const HostSetting& setting : content_.settings) settings_.push_back({++last_setting_number_, 1, setting});
  }
  const auto is_stored = [](const StoredRule& stored, const HostRule& rule) {
    return stored.number == rule.id && stored.rule == content_of(rule);
  };
  if (std::ranges::equal(rules_, content_.rules, is_stored)) return;

  std::map<long, const StoredRule*> earlier;
  for (const StoredRule& stored : rules_) earlier[stored.number] = &stored;
  std::vector<StoredRule> rules;
  last_number_ = 0;
  for (const HostRule& rule : content_.rules) {
    const auto found = earlier.find(rule.id);
    const Revision revision = found == earlier.end()            ? 1
                              : is_stored(*found->second, rule) ? found->second->revision
                                                                : found->second->revision + 1;
    rules.push_back({rule.id, revision, static_cast<const Rule&>(rule)});
    last_number_ = std::max(last_number_, rule.id);
  }
  rules_ = std::move(rules);
}

void PresetRuleStore::show() {
  std::vector<HostRule> rules;
  for (const StoredRule& stored : rules_) {
    HostRule& rule = rules.emplace_back();
    static_cast<Rule&>(rule) = stored.rule;
    rule.id = stored.number;
  }
  content_.settings.clear();
  for (const StoredSetting& stored : settings_) content_.settings.push_back(stored.setting);
  content_.rules = std::move(rules);
}

std::vector<StoredRule> PresetRuleStore::load_rules() {
  take_over();
  return MemoryRuleStore::load_rules();
}

std::optional<StoredRule> PresetRuleStore::try_load_rule(long number) {
  take_over();
  return MemoryRuleStore::try_load_rule(number);
}

StoredRule PresetRuleStore::add_rule(const Rule& rule) {
  take_over();
  StoredRule added = MemoryRuleStore::add_rule(rule);
  show();
  return added;
}

StoredRule PresetRuleStore::update_rule(long number, const Rule& rule, std::optional<Revision> expected) {
  take_over();
  StoredRule updated = MemoryRuleStore::update_rule(number, rule, expected);
  show();
  return updated;
}

void PresetRuleStore::delete_rule(long number, std::optional<Revision> expected) {
  take_over();
  MemoryRuleStore::delete_rule(number, expected);
  show();
}

std::vector<workbench::StoredSetting> PresetRuleStore::load_settings() {
  take_over();
  return MemoryRuleStore::load_settings();
}

}  // namespace test_support
