#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "MemoryOdbc.h"
#include "RuleRecord.h"

/// A server in memory that understands the statements about rules and changes. Each thread has a connection of its own.
class MemoryServer {
 public:
  MemoryServer();

  const workbench::odbc::OdbcApi& api() const { return driver_.api(); }

  /// The names of the rules that are stored.
  std::vector<std::wstring> names() const;
  /// The revision of the rule with this number.
  workbench::Revision revision(long number) const;
  /// Empties the store, which gives the number 1 to the next rule.
  void clear();

 private:
  using Row = test_support::MemoryOdbc::Row;
  using Parameters = std::vector<std::wstring>;

  struct Content {
    std::map<long, workbench::StoredRule> rules;
    long last_number = 0;
    long counter = 0;
    std::map<std::wstring, bool> changes;  // whether the change with this id happened
  };

  std::vector<Row> execute(const std::wstring& sql, const Parameters& parameters);
  std::optional<std::vector<Row>> execute_on_rules(Content& content, const std::wstring& sql,
                                                   const Parameters& parameters) const;
  std::vector<Row> take_void_change(const std::wstring& id);
  void end_transaction(bool commits);

  mutable std::mutex mutex_;
  Content content_;
  std::map<std::thread::id, Content> transactions_;  // what a thread has changed and not committed
  test_support::MemoryOdbc driver_;
};
