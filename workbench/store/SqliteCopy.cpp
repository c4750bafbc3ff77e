#include "SqliteCopy.h"

#include "SqliteChanges.h"
#include "SqliteRecords.h"

namespace workbench {

namespace {

/// The last number that the table gave; SQLite has no row for one that gave none.
long last_number(const SqliteDatabase& database, const char* table) {
  SqliteStatement row = database.prepare("SELECT seq FROM sqlite_sequence WHERE name = ?");
  return row.bind_utf8(1, table).step() ? static_cast<long>(row.integer(0)) : 0;
}

void set_last_number(const SqliteDatabase& database, const char* table, long number) {
  database.prepare("DELETE FROM sqlite_sequence WHERE name = ?").bind_utf8(1, table).run();
  database.prepare("INSERT INTO sqlite_sequence (name, seq) VALUES (?, ?)").bind_utf8(1, table).bind(2, number).run();
}

template <class Record>
void insert_all(const SqliteDatabase& database, const std::vector<Record>& records,
                const schedule::Progress& progress) {
  for (std::size_t i = 0; i < records.size(); ++i) {
    schedule::advance(progress, i, records.size());
    insert_stored(database, records[i]);
  }
}

/// A transaction that only reads, as one can of a file that cannot be written.
class ReadTransaction {
 public:
  explicit ReadTransaction(const SqliteDatabase& database) : database_(database) { database_.execute("BEGIN"); }
  ReadTransaction(const ReadTransaction&) = delete;
  ReadTransaction& operator=(const ReadTransaction&) = delete;
  ~ReadTransaction() {
    try {
      database_.execute("ROLLBACK");
    } catch (const std::exception&) {
      return;  // the library has rolled back by itself
    }
  }

 private:
  const SqliteDatabase& database_;
};

constexpr char rules_table[] = "rules";
constexpr char settings_table[] = "symbol_source_settings";

}  // namespace

StoreCopy select_copy(const SqliteDatabase& database) {
  const ReadTransaction one_moment(database);
  return {select_rules(database),
          select_settings(database),
          select_calendars(database),
          last_number(database, rules_table),
          last_number(database, settings_table),
          select_all_changes(database)};
}

void insert_copy(const SqliteDatabase& database, const StoreCopy& copy, const schedule::Progress& progress) {
  insert_all(database, copy.rules, schedule::part_of(progress, 0, 30));
  insert_all(database, copy.settings, schedule::part_of(progress, 30, 60));
  replace_calendars(database, copy.calendars);
  // The changes that these insertions recorded are replaced by those of the other store.
  database.execute("DELETE FROM changed_rows; DELETE FROM changes");
  insert_all(database, copy.changes, schedule::part_of(progress, 60, 100));
  set_last_number(database, rules_table, copy.last_rule_number);
  set_last_number(database, settings_table, copy.last_setting_number);
}

}  // namespace workbench
