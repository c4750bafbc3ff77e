#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "Progress.h"

struct sqlite3;
struct sqlite3_stmt;

namespace workbench {

class SqliteDatabase;

/// One SQL statement with its parameters. It must not outlive its database.
class SqliteStatement {
 public:
  /// Parameters count from 1.
  SqliteStatement& bind(int parameter, std::int64_t value);
  SqliteStatement& bind(int parameter, std::wstring_view text);
  SqliteStatement& bind_utf8(int parameter, std::string_view text);

  /// Runs to the next row and returns whether there is one.
  bool step();

  /// Runs to the end and makes the statement ready for other parameters.
  void run();

  /// Columns of the current row count from 0.
  std::int64_t integer(int column) const;
  std::wstring text(int column) const;
  std::string utf8(int column) const;

 private:
  friend class SqliteDatabase;

  struct Finalize {
    void operator()(sqlite3_stmt* statement) const noexcept;
  };

  SqliteStatement(const SqliteDatabase& database, sqlite3_stmt* statement)
      : database_(&database), statement_(statement) {}
  void refuse(int code);

  const SqliteDatabase* database_;
  std::unique_ptr<sqlite3_stmt, Finalize> statement_;
};

/// A connection to one SQLite file. Failures throw `StoreError` about that file, or std::bad_alloc.
class SqliteDatabase {
 public:
  /// Opens the file, or creates it; one that cannot be written is opened for reading.
  SqliteDatabase(const std::filesystem::path& path, std::chrono::milliseconds busy_timeout);
  SqliteDatabase(SqliteDatabase&&) noexcept;
  ~SqliteDatabase();

  SqliteStatement prepare(std::string_view sql) const;

  /// Runs statements that take no parameters and give no rows.
  void execute(const char* sql) const;

  /// The integer in the first row of this query.
  std::int64_t integer(std::string_view sql) const;

  /// How long calls wait for another program from now on.
  void set_busy_timeout(std::chrono::milliseconds busy_timeout) const noexcept;

  /// From now on `progress` is called again and again while a call waits for another program, with how much of the time
  /// has passed, or works, with an estimate of how much is done. The call throws `schedule::Cancelled` when `progress`
  /// returns false. It must not use the database; an empty one ends that.
  void set_progress(schedule::Progress progress) const;

  /// Throws what this result code of the library means.
  [[noreturn]] void fail(int code) const;

  /// Throws that the file is damaged.
  [[noreturn]] void fail_damaged(const std::string& detail) const;

 private:
  class CallWatch;

  struct Close {
    void operator()(sqlite3* database) const noexcept;
  };

  std::filesystem::path path_;
  std::unique_ptr<CallWatch> watch_;  // outlives the connection, which calls it
  std::unique_ptr<sqlite3, Close> database_;
};

/// A change of the file, from now to `commit`. Without that everything is as it was.
class SqliteTransaction {
 public:
  /// Waits until no other program is changing the file.
  explicit SqliteTransaction(const SqliteDatabase& database);
  SqliteTransaction(const SqliteTransaction&) = delete;
  SqliteTransaction& operator=(const SqliteTransaction&) = delete;
  ~SqliteTransaction();

  /// Returns once the change is on the disk.
  void commit();

 private:
  const SqliteDatabase& database_;
  bool open_ = true;
};

}  // namespace workbench
