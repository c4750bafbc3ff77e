#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <string>

/// A store file as another program sees it.
class RawDatabase {
 public:
  explicit RawDatabase(const std::filesystem::path& path) {
    const std::u8string name = path.u8string();
    sqlite3_open(reinterpret_cast<const char*>(name.c_str()), &database_);
    sqlite3_extended_result_codes(database_, 1);
  }
  RawDatabase(const RawDatabase&) = delete;
  RawDatabase& operator=(const RawDatabase&) = delete;
  ~RawDatabase() { sqlite3_close(database_); }

  /// Runs statements and returns SQLite's result code.
  int run(const std::string& sql) { return sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr); }

  /// The first column of the first row.
  std::string text(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    sqlite3_prepare_v2(database_, sql.c_str(), -1, &statement, nullptr);
    std::string result;
    if (sqlite3_step(statement) == SQLITE_ROW)
      result.assign(static_cast<const char*>(sqlite3_column_blob(statement, 0)),
                    static_cast<std::size_t>(sqlite3_column_bytes(statement, 0)));
    sqlite3_finalize(statement);
    return result;
  }

 private:
  sqlite3* database_ = nullptr;
};
