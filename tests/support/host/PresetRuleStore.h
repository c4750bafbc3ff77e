#pragma once

#include <vector>

#include "HostRule.h"
#include "MemoryRuleStore.h"

namespace test_support {

/// What the host stores, as a test sets and reads it.
struct StoredContent {
  std::vector<HostRule> rules;
  std::vector<HostSetting> settings;
};

/// The memory store over content that a test can change at any time, as another program could: even to rules that no
/// client could store. Before each call the store takes over what was changed, and a changed rule gets a new revision;
/// after each call the content is what the store holds.
class PresetRuleStore final : public workbench::MemoryRuleStore {
 public:
  StoredContent& content() noexcept { return content_; }

  std::vector<workbench::StoredRule> load_rules() override;
  std::optional<workbench::StoredRule> try_load_rule(long number) override;
  workbench::StoredRule add_rule(const workbench::Rule& rule) override;
  workbench::StoredRule update_rule(long number, const workbench::Rule& rule,
                                    std::optional<workbench::Revision> expected) override;
  void delete_rule(long number, std::optional<workbench::Revision> expected) override;
  std::vector<workbench::StoredSetting> load_settings() override;

 private:
  void take_over();
  void show();

  StoredContent content_;
};

}  // namespace test_support
