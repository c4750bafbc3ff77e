#include "MemoryRuleStore.h"

#include <algorithm>
#include <map>
#include <set>

namespace workbench {

namespace {

/// The settings with the numbers that follow `last_number`, which becomes the last of them.
std::vector<StoredSetting> numbered(const std::vector<SymbolSourceSetting>& settings, long& last_number,
                                    const schedule::Progress& progress = {}) {
  std::vector<StoredSetting> stored;
  for (const SymbolSourceSetting& setting : settings) {
    schedule::advance(progress, stored.size(), settings.size());
    refuse_invalid(setting);
    stored.push_back({++last_number, 1, setting});
  }
  return stored;
}

/// `present`, with the calendars of the same names replaced by these.
std::vector<StoredCalendar> merged(std::vector<StoredCalendar> present, const std::vector<StoredCalendar>& calendars) {
  const auto name = [](const StoredCalendar& stored) -> const std::string& { return stored.calendar.name; };
  for (const StoredCalendar& calendar : calendars) {
    refuse_invalid(calendar);
    const auto found = std::ranges::lower_bound(present, name(calendar), {}, name);
    if (found != present.end() && name(*found) == name(calendar)) {
      *found = calendar;
    } else {
      present.insert(found, calendar);
    }
  }
  return present;
}

}  // namespace

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

std::vector<RuleChange> MemoryRuleStore::load_changes(long number) {
  std::vector<RuleChange> changes;
  for (const RecordedChange& recorded : changes_)
    if (recorded.number == number) changes.push_back(recorded.change);
  return changes;
}

/// Both lists are by ascending number.
MemoryRuleStore::RecordedChanges MemoryRuleStore::changes_between(const std::vector<StoredRule>& old_rules,
                                                                  const std::vector<StoredRule>& new_rules) {
  const std::wstring user = process_user();
  const std::wstring time = present_time();
  RecordedChanges changes;
  const auto record = [&](long number, std::optional<Rule> before, std::optional<Rule> after) {
    changes.push_back({number, {user, time, std::move(before), std::move(after)}});
  };
  auto next = new_rules.begin();
  for (const StoredRule& old : old_rules) {
    for (; next != new_rules.end() && next->number < old.number; ++next) record(next->number, {}, next->rule);
    if (next == new_rules.end() || next->number != old.number) {
      record(old.number, old.rule, {});
    } else {
      if (next->revision != old.revision) record(old.number, old.rule, next->rule);
      ++next;
    }
  }
  for (; next != new_rules.end(); ++next) record(next->number, {}, next->rule);
  return changes;
}

StoredRule MemoryRuleStore::add_rule(const Rule& rule) {
  refuse_invalid(rule);
  refuse_duplicate(rule, 0);
  StoredRule added{last_number_ + 1, 1, rule};
  RecordedChanges changes = changes_between({}, {added});
  rules_.push_back(added);
  keep(std::move(changes));
  ++last_number_;
  notify_subscribers();
  return added;
}

StoredRule MemoryRuleStore::update_rule(long number, const Rule& rule, std::optional<Revision> expected) {
  refuse_invalid(rule);
  const auto found = find_unchanged(number, expected);
  refuse_duplicate(rule, number);
  StoredRule updated{number, found->revision + 1, rule};
  std::vector<StoredSetting> settings = settings_;
  for (StoredSetting& stored : settings) {
    if (found->rule.name == rule.name || stored.setting.rule_name != found->rule.name) continue;
    stored.setting.rule_name = rule.name;
    ++stored.revision;
  }
  StoredRule kept = updated;
  keep(changes_between({*found}, {updated}));
  std::swap(*found, kept);
  settings_.swap(settings);
  notify_subscribers();
  return updated;
}

void MemoryRuleStore::delete_rule(long number, std::optional<Revision> expected) {
  const auto found = find_unchanged(number, expected);
  const auto rule_name = [](const StoredSetting& stored) -> const std::wstring& { return stored.setting.rule_name; };
  if (std::ranges::find(settings_, found->rule.name, rule_name) != settings_.end()) throw rule_in_use(found->rule.name);
  keep(changes_between({*found}, {}));
  rules_.erase(found);
  notify_subscribers();
}

std::vector<StoredSetting>::iterator MemoryRuleStore::find_unchanged_setting(long number,
                                                                             std::optional<Revision> expected) {
  const auto found = std::ranges::find(settings_, number, &StoredSetting::number);
  if (found == settings_.end()) throw setting_not_found(number);
  if (expected && *expected != found->revision) throw setting_changed(found->setting.name);
  return found;
}

StoredSetting MemoryRuleStore::add_setting(const SymbolSourceSetting& setting) {
  refuse_invalid(setting);
  StoredSetting added{last_setting_number_ + 1, 1, setting};
  settings_.push_back(added);
  ++last_setting_number_;
  notify_subscribers();
  return added;
}

StoredSetting MemoryRuleStore::update_setting(long number, const SymbolSourceSetting& setting,
                                              std::optional<Revision> expected) {
  refuse_invalid(setting);
  const auto found = find_unchanged_setting(number, expected);
  StoredSetting updated{number, found->revision + 1, setting};
  StoredSetting kept = updated;
  std::swap(*found, kept);
  notify_subscribers();
  return updated;
}

void MemoryRuleStore::delete_setting(long number, std::optional<Revision> expected) {
  settings_.erase(find_unchanged_setting(number, expected));
  notify_subscribers();
}

void MemoryRuleStore::replace_settings(const std::vector<SymbolSourceSetting>& settings) {
  long number = last_setting_number_;
  settings_ = numbered(settings, number);
  last_setting_number_ = number;
  notify_subscribers();
}

void MemoryRuleStore::replace_calendars(const std::vector<StoredCalendar>& calendars) {
  calendars_ = merged(calendars_, calendars);
  notify_subscribers();
}

void MemoryRuleStore::import_records(const StoreImport& records, const schedule::Progress& progress) {
  std::vector<StoredRule> rules = rules_;
  std::map<std::wstring, std::size_t> positions;
  for (std::size_t i = 0; i < rules.size(); ++i) positions.emplace(rules[i].rule.name, i);
  long number = last_number_;
  const schedule::Progress storing_rules = schedule::part_of(progress, 0, 50);
  for (std::size_t i = 0; i < records.rules.size(); ++i) {
    schedule::advance(storing_rules, i, records.rules.size());
    const Rule& rule = records.rules[i];
    refuse_invalid(rule);
    const auto [found, is_new] = positions.emplace(rule.name, rules.size());
    if (is_new) {
      rules.push_back({++number, 1, rule});
    } else if (StoredRule& stored = rules[found->second]; stored.rule != rule) {
      stored = {stored.number, stored.revision + 1, rule};
    }
  }
  RecordedChanges changes = changes_between(rules_, rules);
  if (records.settings) {
    long setting_number = last_setting_number_;
    settings_ = numbered(*records.settings, setting_number, schedule::part_of(progress, 50, 100));
    last_setting_number_ = setting_number;
  }
  rules_ = std::move(rules);
  keep(std::move(changes));
  last_number_ = number;
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
  long setting_number = last_setting_number_;
  std::vector<StoredSetting> settings = numbered(content.settings, setting_number);
  RecordedChanges changes = changes_between(rules_, rules);
  calendars_ = merged({}, content.calendars);
  settings_ = std::move(settings);
  last_setting_number_ = setting_number;
  rules_ = std::move(rules);
  keep(std::move(changes));
  last_number_ = number;
  notify_subscribers();
}

}  // namespace workbench
