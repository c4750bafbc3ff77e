#include "ImportPlan.h"

#include <algorithm>
#include <map>
#include <set>

namespace workbench::schedule {

namespace {

void refuse_values(const Lined<NamedRule>& lined, std::vector<Mistake>& refused) {
  for (const RuleField& field : rule_fields) {
    const std::int32_t value = lined.item.numbers.*field.value;
    if (value >= field.least && value <= field.greatest) continue;
    refused.push_back(
        {lined.line,
         MistakeKind::number_range,
         {field.name, std::to_string(field.least), std::to_string(field.greatest), std::to_string(value)}});
  }
}

void plan_rules(const std::vector<Lined<NamedRule>>& file, std::span<const NamedRule> stored, const Progress& progress,
                ImportPlan& plan) {
  std::map<std::string_view, const RuleNumbers*> numbers;
  for (const NamedRule& rule : stored) numbers.emplace(rule.name, &rule.numbers);
  std::map<std::string_view, std::size_t> lines;
  for (const Lined<NamedRule>& lined : file) {
    advance(progress, plan.rules.size(), file.size());
    const NamedRule& rule = lined.item;
    if (const auto [first, is_new] = lines.emplace(rule.name, lined.line); !is_new)
      plan.refused.push_back({lined.line, MistakeKind::repeated_rule, {rule.name, std::to_string(first->second)}});
    refuse_values(lined, plan.refused);
    if (!is_edited_name(rule.name)) plan.warnings.push_back({lined.line, MistakeKind::edited_name, {rule.name}});
    const auto found = numbers.find(rule.name);
    const ImportAction action = found == numbers.end()           ? ImportAction::add
                                : *found->second == rule.numbers ? ImportAction::leave
                                                                 : ImportAction::change;
    plan.rules.push_back({lined.line, action, rule});
  }
}

/// The n-th setting of a name in the file replaces the n-th of that name in the store.
void plan_settings(const std::vector<Lined<NamedSetting>>& file, std::span<const NamedSetting> stored,
                   const Progress& progress, ImportPlan& plan) {
  std::multimap<std::string_view, const NamedSetting*> rest;
  for (const NamedSetting& setting : stored) rest.emplace(setting.name, &setting);
  plan.settings.emplace();
  for (const Lined<NamedSetting>& lined : file) {
    advance(progress, plan.settings->size(), file.size());
    ImportAction action = ImportAction::add;
    if (const auto found = rest.lower_bound(lined.item.name); found != rest.end() && found->first == lined.item.name) {
      action = *found->second == lined.item ? ImportAction::leave : ImportAction::change;
      rest.erase(found);
    }
    plan.settings->push_back({lined.line, action, lined.item});
  }
  for (const auto& [name, setting] : rest) plan.removed_settings.push_back(*setting);
}

/// A setting of the file may name a rule or calendar that the store does not have, but that is probably a mistake.
void warn_of_missing(const RuleFile& file, const ImportTarget& store, ImportPlan& plan) {
  std::set<std::string_view> rules{""};
  std::set<std::string_view> calendars{""};
  for (const NamedRule& rule : store.rules) rules.insert(rule.name);
  if (file.rules)
    for (const Lined<NamedRule>& lined : *file.rules) rules.insert(lined.item.name);
  for (const Calendar& calendar : store.calendars) calendars.insert(calendar.name);
  for (const auto& [line, setting] : *file.settings) {
    if (!rules.contains(setting.rule))
      plan.warnings.push_back({line, MistakeKind::setting_rule_missing, {setting.name, setting.rule}});
    if (!calendars.contains(setting.calendar))
      plan.warnings.push_back({line, MistakeKind::setting_calendar_missing, {setting.name, setting.calendar}});
  }
}

}  // namespace

ImportPlan plan_import(const RuleFile& file, const ImportTarget& store, const Progress& progress) {
  ImportPlan plan{.refused = file.mistakes, .ignored_columns = file.ignored_columns};
  if (file.rules) plan_rules(*file.rules, store.rules, part_of(progress, 0, 50), plan);
  if (file.settings) {
    plan_settings(*file.settings, store.settings, part_of(progress, 50, 100), plan);
    warn_of_missing(file, store, plan);
  }
  plan.changes_anything =
      std::ranges::any_of(plan.rules, [](const auto& planned) { return planned.action != ImportAction::leave; }) ||
      (plan.settings && !std::ranges::equal(*plan.settings, store.settings, {}, &PlannedSetting::setting));
  std::ranges::stable_sort(plan.refused, {}, &Mistake::line);
  std::ranges::stable_sort(plan.warnings, {}, &Mistake::line);
  return plan;
}

}  // namespace workbench::schedule
