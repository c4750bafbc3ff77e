#include "SqliteDatabase.h"

#include <windows.h>
#include <sqlite3.h>

#include <algorithm>
#include <exception>
#include <new>
#include <utility>

#include "StoreError.h"
#include "Wtf8.h"

namespace workbench {

namespace {

/// The kind of a system error that SQLite got when it opened, read or wrote a file.
StoreErrorKind system_error_kind(int error) {
  switch (error) {
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      return StoreErrorKind::locked;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
      return StoreErrorKind::read_only;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return StoreErrorKind::full;
    default:
      return StoreErrorKind::unavailable;
  }
}

StoreErrorKind error_kind(int code, int system_error) {
  if (code == SQLITE_CONSTRAINT_UNIQUE) return StoreErrorKind::duplicate_name;
  if (code == SQLITE_READONLY_DBMOVED) return StoreErrorKind::unavailable;
  switch (code & 0xFF) {
    case SQLITE_READONLY:
      return StoreErrorKind::read_only;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      return StoreErrorKind::locked;
    case SQLITE_FULL:
      return StoreErrorKind::full;
    case SQLITE_CONSTRAINT:
    case SQLITE_TOOBIG:
      return StoreErrorKind::invalid_value;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:  // the statements are right, so the file's schema is not
      return StoreErrorKind::damaged;
    case SQLITE_CANTOPEN:
    case SQLITE_IOERR:
      return system_error_kind(system_error);
    default:
      return StoreErrorKind::unavailable;
  }
}

std::string utf8(const std::filesystem::path& path) { return to_wtf8(path.native()); }

}  // namespace

/// Watches the calls of one connection: how long they wait for another program, and whether the user cancels them.
class SqliteDatabase::CallWatch {
 public:
  explicit CallWatch(std::chrono::milliseconds timeout) : busy_timeout(timeout) {}

  std::chrono::milliseconds busy_timeout;

  void watch(sqlite3* database, schedule::Progress progress) {
    constexpr int period = 10'000;  // operations; a fraction of a millisecond
    progress_ = std::move(progress);
    periods_ = 0;
    interruption_ = nullptr;
    sqlite3_progress_handler(database, progress_ ? period : 0, progress_ ? &on_period : nullptr, this);
  }

  /// Throws what ended the call that has just failed, unless that was an error of the library.
  void rethrow_interruption() {
    if (interruption_) std::rethrow_exception(std::exchange(interruption_, nullptr));
  }

  /// Called by the library while another program holds the file; 0 gives the call up.
  static int on_busy(void* watch, int waits) noexcept {
    using std::chrono::milliseconds;
    auto& self = *static_cast<CallWatch*>(watch);
    const auto now = std::chrono::steady_clock::now();
    if (waits == 0) self.wait_began_ = now;
    const auto waited = std::chrono::duration_cast<milliseconds>(now - self.wait_began_);
    if (waited >= self.busy_timeout || !self.goes_on(waited.count(), self.busy_timeout.count())) return 0;
    constexpr int longest_pause_ms = 50;
    sqlite3_sleep(std::min(1 + 2 * waits, longest_pause_ms));
    return 1;
  }

 private:
  /// Called by the library after so many operations; 1 gives the call up. How many there will be is not known, so the
  /// share that is done comes closer and closer to all of it.
  static int on_period(void* watch) noexcept {
    constexpr std::int64_t periods_of_long_work = 500;
    auto& self = *static_cast<CallWatch*>(watch);
    ++self.periods_;
    return self.goes_on(self.periods_, self.periods_ + periods_of_long_work) ? 0 : 1;
  }

  /// No exception may pass the library.
  bool goes_on(std::int64_t done, std::int64_t all) noexcept try {
    schedule::advance(progress_, static_cast<std::size_t>(done), static_cast<std::size_t>(all));
    return true;
  } catch (...) {
    interruption_ = std::current_exception();
    return false;
  }

  schedule::Progress progress_;
  std::int64_t periods_ = 0;
  std::chrono::steady_clock::time_point wait_began_;
  std::exception_ptr interruption_;
};

void SqliteStatement::Finalize::operator()(sqlite3_stmt* statement) const noexcept { sqlite3_finalize(statement); }

SqliteStatement& SqliteStatement::bind(int parameter, std::int64_t value) {
  refuse(sqlite3_bind_int64(statement_.get(), parameter, value));
  return *this;
}

SqliteStatement& SqliteStatement::bind(int parameter, std::wstring_view text) {
  return bind_utf8(parameter, to_wtf8(text));
}

SqliteStatement& SqliteStatement::bind_utf8(int parameter, std::string_view text) {
  refuse(sqlite3_bind_text64(statement_.get(), parameter, text.empty() ? "" : text.data(), text.size(),
                             SQLITE_TRANSIENT, SQLITE_UTF8));
  return *this;
}

bool SqliteStatement::step() {
  const int code = sqlite3_step(statement_.get());
  if (code != SQLITE_ROW && code != SQLITE_DONE) refuse(code);
  return code == SQLITE_ROW;
}

void SqliteStatement::run() {
  while (step()) continue;
  refuse(sqlite3_reset(statement_.get()));
}

std::int64_t SqliteStatement::integer(int column) const { return sqlite3_column_int64(statement_.get(), column); }

std::wstring SqliteStatement::text(int column) const { return from_wtf8(utf8(column)); }

std::string SqliteStatement::utf8(int column) const {
  const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_.get(), column));
  const int size = sqlite3_column_bytes(statement_.get(), column);
  return {bytes ? bytes : "", bytes ? static_cast<std::size_t>(size) : 0};
}

void SqliteStatement::refuse(int code) {
  if (code != SQLITE_OK) database_->fail(code);
}

void SqliteDatabase::Close::operator()(sqlite3* database) const noexcept { sqlite3_close(database); }

SqliteDatabase::SqliteDatabase(const std::filesystem::path& path, std::chrono::milliseconds busy_timeout)
    : path_(path), watch_(std::make_unique<CallWatch>(busy_timeout)) {
  sqlite3* database = nullptr;
  const int code = sqlite3_open_v2(utf8(path).c_str(), &database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
  database_.reset(database);
  if (code != SQLITE_OK) fail(code);
  sqlite3_extended_result_codes(database, 1);
  sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_busy_handler(database, &CallWatch::on_busy, watch_.get());
}

SqliteDatabase::SqliteDatabase(SqliteDatabase&&) noexcept = default;
SqliteDatabase::~SqliteDatabase() = default;

SqliteStatement SqliteDatabase::prepare(std::string_view sql) const {
  sqlite3_stmt* statement = nullptr;
  const int code = sqlite3_prepare_v2(database_.get(), sql.data(), static_cast<int>(sql.size()), &statement, nullptr);
  if (code != SQLITE_OK) fail(code);
  return {*this, statement};
}

void SqliteDatabase::execute(const char* sql) const {
  const int code = sqlite3_exec(database_.get(), sql, nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) fail(code);
}

std::int64_t SqliteDatabase::integer(std::string_view sql) const {
  SqliteStatement statement = prepare(sql);
  return statement.step() ? statement.integer(0) : 0;
}

void SqliteDatabase::set_busy_timeout(std::chrono::milliseconds busy_timeout) const noexcept {
  watch_->busy_timeout = busy_timeout;
}

void SqliteDatabase::set_progress(schedule::Progress progress) const {
  watch_->watch(database_.get(), std::move(progress));
}

void SqliteDatabase::fail(int code) const {
  watch_->rethrow_interruption();
  if ((code & 0xFF) == SQLITE_NOMEM || !database_) throw std::bad_alloc();
  throw StoreError(error_kind(code, sqlite3_system_errno(database_.get())), path_.native(),
                   sqlite3_errmsg(database_.get()));
}

void SqliteDatabase::fail_damaged(const std::string& detail) const {
  throw StoreError(StoreErrorKind::damaged, path_.native(), detail);
}

SqliteTransaction::SqliteTransaction(const SqliteDatabase& database) : database_(database) {
  database_.execute("BEGIN IMMEDIATE");
}

SqliteTransaction::~SqliteTransaction() {
  if (!open_) return;
  try {
    database_.execute("ROLLBACK");
  } catch (...) {
    // A ROLLBACK that fails means that the library has rolled back already.
    return;
  }
}

void SqliteTransaction::commit() {
  database_.execute("COMMIT");
  open_ = false;
}

}  // namespace workbench
