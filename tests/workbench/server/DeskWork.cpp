#include "DeskWork.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <sstream>

#include "TextEncoding.h"

using namespace workbench;
using Kind = StoreErrorKind;

namespace {

constexpr std::size_t most_records = 15;
constexpr std::size_t fewest_rules = 3;

bool is_conflict(Kind kind) {
  return kind == Kind::changed || kind == Kind::not_found || kind == Kind::in_use || kind == Kind::setting_changed ||
         kind == Kind::setting_not_found;
}

DeskChange record_of(const StoredRule& stored) {
  return {.number = stored.number,
          .revision = stored.revision,
          .offset = stored.rule.roll_offset,
          .name = base::to_utf8(stored.rule.name)};
}

DeskChange record_of(const StoredSetting& stored) {
  return {.is_setting = true,
          .number = stored.number,
          .revision = stored.revision,
          .name = base::to_utf8(stored.setting.name),
          .rule_name = base::to_utf8(stored.setting.rule_name)};
}

}  // namespace

std::string line_of(const DeskChange& change) {
  std::ostringstream line;
  line << change.is_setting << ' ' << change.deletes << ' ' << change.number << ' ' << change.revision << ' '
       << change.offset << ' ' << change.name << ' ' << change.rule_name;
  return line.str();
}

DeskChange change_of(const std::string& line) {
  DeskChange change;
  std::istringstream(line) >> change.is_setting >> change.deletes >> change.number >> change.revision >>
      change.offset >> change.name >> change.rule_name;
  return change;
}

DeskWorker::DeskWorker(RuleStore& store, std::string name, unsigned seed, Report report)
    : store_(store), name_(std::move(name)), random_(seed), report_(std::move(report)) {}

void DeskWorker::work(int changes) {
  while (changes > 0) {
    try {
      if (try_change()) --changes;
    } catch (const StoreError& error) {
      if (!is_conflict(error.kind())) throw;
    }
  }
}

/// Returns whether there was a record of the kind that was chosen.
bool DeskWorker::try_change() {
  const std::vector<StoredRule> rules = store_.load_rules();
  const std::vector<StoredSetting> settings = store_.load_settings();
  const unsigned choice = rules.empty() ? 0 : random_() % 8;
  const StoredRule& rule = rules.empty() ? StoredRule() : any_of(rules);
  switch (choice) {
    case 0:
      if (rules.size() >= most_records) return false;
      store_rule(0, 0, {.name = next_name()});
      return true;
    case 1:
      if (rules.size() <= fewest_rules) return false;
      erase(record_of(rule));
      return true;
    case 2:
      if (settings.size() >= most_records) return false;
      store_setting(0, 0, {next_name(), rule.rule.name});
      return true;
    case 3:
      if (settings.empty()) return false;
      erase(record_of(any_of(settings)));
      return true;
    case 4:
    case 5: {
      if (settings.empty()) return false;
      const StoredSetting& setting = any_of(settings);
      store_setting(setting.number, setting.revision, {setting.setting.name, rule.rule.name});
      return true;
    }
    default:
      change_rule(rule);
      return true;
  }
}

void DeskWorker::change_rule(const StoredRule& chosen) {
  Rule rule = chosen.rule;
  if (random_() % 2 == 0)
    rule.name = next_name();
  else
    rule.roll_offset = (rule.roll_offset + 1) % 100;
  store_rule(chosen.number, chosen.revision, rule);
}

void DeskWorker::store_rule(long number, Revision revision, const Rule& rule) {
  report_(record_of(StoredRule{number, revision + 1, rule}), false);
  report_(record_of(number == 0 ? store_.add_rule(rule) : store_.update_rule(number, rule, revision)), true);
}

void DeskWorker::store_setting(long number, Revision revision, const SymbolSourceSetting& setting) {
  report_(record_of(StoredSetting{number, revision + 1, setting}), false);
  report_(record_of(number == 0 ? store_.add_setting(setting) : store_.update_setting(number, setting, revision)),
          true);
}

void DeskWorker::erase(DeskChange change) {
  change.deletes = true;
  report_(change, false);
  if (change.is_setting)
    store_.delete_setting(change.number, change.revision);
  else
    store_.delete_rule(change.number, change.revision);
  report_(change, true);
}

std::wstring DeskWorker::next_name() { return base::from_utf8(name_ + '-' + std::to_string(++names_)); }

void DeskHistory::add(const DeskChange& change) {
  const Key key{change.is_setting, change.number};
  const bool is_first = change.deletes ? deleted_.emplace(key, change.revision).second
                                       : stored_[key].emplace(change.revision, change).second;
  EXPECT_TRUE(is_first) << "a change overwrote another: " << line_of(change);
}

void DeskHistory::expect_content_of(RuleStore& store) {
  std::set<Key> present;
  for (const StoredRule& stored : store.load_rules()) {
    present.insert({false, stored.number});
    expect_rule(store, stored);
  }
  for (const StoredSetting& stored : store.load_settings()) {
    present.insert({true, stored.number});
    expect_setting(stored);
  }
  for (const auto& [key, revisions] : stored_)
    if (!present.contains(key)) expect_deleted(key);
  for (const auto& [key, revision] : deleted_) EXPECT_FALSE(present.contains(key)) << "a deletion was lost";
}

void DeskHistory::expect_rule(RuleStore& store, const StoredRule& stored) {
  const Key key{false, stored.number};
  for (Revision revision = 1; revision <= stored.revision; ++revision)
    EXPECT_TRUE(find(key, revision) || (revision == 1 && take_unknown_addition(false)))
        << "revision " << revision << " of rule " << stored.number << " was not acknowledged";
  const auto known = stored_.find(key);
  if (known != stored_.end()) {
    EXPECT_LE(known->second.rbegin()->first, stored.revision) << "an acknowledged change is lost";
  }
  if (const std::optional<DeskChange> last = find(key, stored.revision)) {
    EXPECT_EQ(line_of(record_of(stored)), line_of(*last));
  }
  EXPECT_EQ(store.load_changes(stored.number).size(), static_cast<std::size_t>(stored.revision));
}

/// Each revision of a setting that no workbench was acknowledged is a new name of its rule.
void DeskHistory::expect_setting(const StoredSetting& stored) const {
  std::vector<DeskChange> last;
  const auto known = stored_.find({true, stored.number});
  if (known != stored_.end()) {
    EXPECT_LE(known->second.rbegin()->first, stored.revision) << "an acknowledged change is lost";
    last.push_back(known->second.rbegin()->second);
  }
  for (const DeskChange& change : unknown_)
    if (change.is_setting && !change.deletes && (change.number == stored.number || change.number == 0))
      last.push_back(change);
  const std::map<std::string, std::string> new_names = new_names_of_rules();
  bool is_explained = false;
  for (DeskChange& change : last) {
    change.number = stored.number;
    for (; change.revision < stored.revision && new_names.contains(change.rule_name); ++change.revision)
      change.rule_name = new_names.at(change.rule_name);
    is_explained = is_explained || change == record_of(stored);
  }
  EXPECT_TRUE(is_explained) << line_of(record_of(stored)) << " is not what was acknowledged";
}

void DeskHistory::expect_deleted(const Key& key) {
  if (const auto deleted = deleted_.find(key); deleted != deleted_.end()) {
    EXPECT_LE(stored_[key].rbegin()->first, deleted->second) << "a change was acknowledged after the deletion";
    return;
  }
  const auto is_deletion = [&](const DeskChange& change) {
    return change.deletes && Key(change.is_setting, change.number) == key;
  };
  EXPECT_TRUE(std::ranges::any_of(unknown_, is_deletion)) << "record " << key.second << " is lost";
}

/// The change that led to this revision, or may have.
std::optional<DeskChange> DeskHistory::find(const Key& key, Revision revision) const {
  if (const auto known = stored_.find(key); known != stored_.end())
    if (const auto found = known->second.find(revision); found != known->second.end()) return found->second;
  for (const DeskChange& change : unknown_)
    if (!change.deletes && Key(change.is_setting, change.number) == key && change.revision == revision) return change;
  return std::nullopt;
}

/// Each of them can have added one record.
bool DeskHistory::take_unknown_addition(bool is_setting) {
  const auto found = std::ranges::find_if(unknown_, [&](const DeskChange& change) {
    return change.is_setting == is_setting && !change.deletes && change.number == 0;
  });
  if (found == unknown_.end()) return false;
  unknown_.erase(found);
  return true;
}

std::map<std::string, std::string> DeskHistory::new_names_of_rules() const {
  std::map<std::string, std::string> new_names;
  const auto note = [&](const DeskChange& change) {
    if (change.is_setting || change.deletes || change.revision < 2) return;
    const std::optional<DeskChange> before = find({false, change.number}, change.revision - 1);
    if (before && before->name != change.name) new_names[before->name] = change.name;
  };
  for (const DeskChange& change : unknown_) note(change);
  for (const auto& [key, revisions] : stored_)
    for (const auto& [revision, change] : revisions) note(change);
  return new_names;
}
