#pragma once

#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "RuleStore.h"

/// A change of one rule or setting of a store that many workbenches share.
struct DeskChange {
  bool is_setting = false;
  bool deletes = false;
  long number = 0;                   ///< 0: of a new record, whose number is not known yet
  workbench::Revision revision = 0;  ///< after the change; of a record that is deleted, its last one
  long offset = 0;                   ///< of a rule
  std::string name{};
  std::string rule_name{};  ///< of a setting

  bool operator==(const DeskChange&) const = default;
};

/// The change as a line, and back.
std::string line_of(const DeskChange& change);
DeskChange change_of(const std::string& line);

/// One of many workbenches on a store, which adds, changes, renames and deletes random rules and settings. No two rules
/// ever have the same name.
class DeskWorker {
 public:
  /// Hears of each change before it begins and when it is acknowledged.
  using Report = std::function<void(const DeskChange& change, bool acknowledged)>;

  /// `name` is that of the workbench, which no other has.
  DeskWorker(workbench::RuleStore& store, std::string name, unsigned seed, Report report);

  /// Makes so many changes. One to which another workbench's change was in the way is tried again with other records.
  void work(int changes);

 private:
  bool try_change();
  void store_rule(long number, workbench::Revision revision, const workbench::Rule& rule);
  void change_rule(const workbench::StoredRule& chosen);
  void store_setting(long number, workbench::Revision revision, const workbench::SymbolSourceSetting& setting);
  void erase(DeskChange change);
  std::wstring next_name();
  template <class Records>
  const typename Records::value_type& any_of(const Records& records) {
    return records[random_() % records.size()];
  }

  workbench::RuleStore& store_;
  std::string name_;
  std::mt19937 random_;
  Report report_;
  int names_ = 0;
};

/// What the workbenches of a desk were acknowledged, and with it the only content that the store may have.
class DeskHistory {
 public:
  /// Adds a change that happened. Fails the test when another one led to the same revision of the record.
  void add(const DeskChange& change);

  /// Adds a change that may have happened: its workbench was killed.
  void add_unknown(const DeskChange& change) { unknown_.push_back(change); }

  /// Fails the test unless the store has exactly what was acknowledged.
  void expect_content_of(workbench::RuleStore& store);

 private:
  using Key = std::pair<bool, long>;  // whether it is a setting, and its number

  void expect_rule(workbench::RuleStore& store, const workbench::StoredRule& stored);
  void expect_setting(const workbench::StoredSetting& stored) const;
  void expect_deleted(const Key& key);
  std::optional<DeskChange> find(const Key& key, workbench::Revision revision) const;
  bool take_unknown_addition(bool is_setting);
  std::map<std::string, std::string> new_names_of_rules() const;

  std::map<Key, std::map<workbench::Revision, DeskChange>> stored_;
  std::map<Key, workbench::Revision> deleted_;
  std::vector<DeskChange> unknown_;
};
