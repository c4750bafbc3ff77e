#pragma once

#include <map>
#include <mutex>
#include <optional>
#include <thread>

#include "MemoryOdbc.h"
#include "RuleRecord.h"

/// A server in memory that understands the statements about rules, changes and the version of the tables. Each thread
/// has a connection of its own.
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

  /// The version of the tables, which is the present one unless a test sets another; 0: there are none.
  int version() const;
  void set_version(int version);

  /// What a damaged server gives as the text of every rule, null included; nothing: what it is.
  std::optional<std::optional<std::wstring>> text_of_rules;

 private:
  using Row = test_support::MemoryOdbc::Row;
  using Parameters = std::vector<std::wstring>;

  struct Content {
    std::map<long, workbench::StoredRule> rules;
    long last_number = 0;
    long counter = 0;
    std::map<std::wstring, bool> changes;  // whether the change with this id happened
    int version = present_version();
  };

  struct Transaction {
    std::optional<Content> content;  // what it has changed, once it has locked the store
    bool locks_creation = false;
  };

  static int present_version();

  std::vector<Row> execute(const std::wstring& sql, const Parameters& parameters);
  std::optional<std::vector<Row>> execute_on_rules(Content& content, const std::wstring& sql,
                                                   const Parameters& parameters) const;
  std::optional<std::vector<Row>> execute_on_tables(Content& content, const std::wstring& sql,
                                                    const Parameters& parameters);
  Content& present_content();
  void lock_creation();
  std::vector<Row> take_void_change(Content& content, const std::wstring& id) const;
  void begin_transaction();
  void end_transaction(bool commits);

  mutable std::mutex mutex_;
  Content content_;
  std::map<std::thread::id, Transaction> transactions_;
  test_support::MemoryOdbc driver_;
};
