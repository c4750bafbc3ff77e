#include "ServerSchema.h"

#include "ServerChanges.h"
#include "ServerCopy.h"
#include "ServerRecords.h"

namespace workbench {

namespace {

constexpr std::int64_t store_application = 0x7A644552;

int present_version(const ServerDialect& sql) {
  return sql.first_version + static_cast<int>(sql.migrations.size()) - 1;
}

/// The version of the tables; 0 when there are none.
std::int64_t read_version(ServerSession& session) {
  odbc::OdbcStatement tables = session.prepare(session.sql().count_tables);
  tables.execute();
  tables.fetch();
  if (tables.integer(0) == 0) return 0;
  if (tables.integer(1) == 0) session.fail(StoreErrorKind::foreign, "there are tables of our names without a version");
  odbc::OdbcStatement row = session.prepare(session.sql().read_version);
  row.execute();
  if (!row.fetch() || row.integer(0) != store_application)
    session.fail(StoreErrorKind::foreign, "the version is that of another program");
  const std::int64_t version = row.integer(1);
  if (version < session.sql().first_version)
    session.fail(StoreErrorKind::foreign, "no server store had the version " + std::to_string(version));
  if (version > present_version(session.sql()))
    session.fail(StoreErrorKind::newer, "version " + std::to_string(version));
  return version;
}

void select(ServerSession& session, const std::wstring& sql) { session.prepare(sql).execute(); }

/// A copy is refused when the schema holds a store.
void refuse_copy(const ServerSession& session, const ServerStoreOptions& options) {
  if (options.copied) session.fail(StoreErrorKind::exists, "the schema holds a store");
}

std::int64_t migrate(ServerSession& session, const ServerStoreOptions& options, const std::wstring& id,
                     const std::function<void(odbc::OdbcTransaction&)>& commit) {
  const ServerDialect& sql = session.sql();
  odbc::OdbcTransaction transaction(session.connection());
  select(session, sql.lock_creation);
  // Another workbench may have been here first.
  const std::int64_t old_version = read_version(session);
  if (old_version != 0) refuse_copy(session, options);
  if (old_version == present_version(sql)) return read_counter(session, sql.read_counter);
  select(session, sql.become_owner);
  const std::int64_t first_step = old_version == 0 ? 0 : old_version - sql.first_version + 1;
  for (auto step = static_cast<std::size_t>(first_step); step < sql.migrations.size(); ++step)
    session.execute(sql.migrations[step]);
  session.prepare(sql.write_version).bind(1, store_application).bind(2, present_version(sql)).execute();
  if (old_version == 0 && options.copied)
    insert_copy(session, *options.copied);
  else if (old_version == 0)
    insert_content(session, options.first_content);
  take_id(session, id);
  const std::int64_t counter = read_counter(session, sql.read_counter);
  commit(transaction);
  return counter;
}

}  // namespace

std::int64_t prepare_schema(ServerSession& session, const ServerStoreOptions& options, const std::wstring& id,
                            const std::function<void(odbc::OdbcTransaction& transaction)>& commit) {
  const std::int64_t version = read_version(session);
  if (version != 0) refuse_copy(session, options);
  if (version == present_version(session.sql())) return read_counter(session, session.sql().read_counter);
  if (version == 0 && !options.may_create) session.fail(StoreErrorKind::missing, "there is no store in the schema");
  return migrate(session, options, id, commit);
}

bool settle_preparation(ServerSession& session, const std::wstring& id) {
  // The transaction in question holds this lock until it has ended, one way or the other.
  select(session, session.sql().lock_creation);
  return read_version(session) == present_version(session.sql()) && is_id_taken(session, id);
}

}  // namespace workbench
