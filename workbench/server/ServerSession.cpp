#include "ServerSession.h"

#include <algorithm>
#include <string_view>

#include "ServerError.h"

namespace workbench {

namespace {

/// How long a connection may take.
constexpr std::chrono::seconds login_timeout{10};

}  // namespace

ServerSession::ServerSession(const odbc::OdbcApi& api, odbc::ConnectionString options, const ServerDialect& dialect)
    : api_(api),
      options_(std::move(options)),
      dialect_(dialect),
      description_(odbc::describe(options_, dialect.driver)) {
  odbc::refuse_unknown_keywords(options_, dialect.driver);
}

void ServerSession::fail(StoreErrorKind kind, const std::string& detail) const {
  throw StoreError(kind, description_, detail);
}

void ServerSession::open() {
  if (connection_ && connection_->is_usable()) return;
  connection_.reset();
  auto opened = std::make_unique<odbc::OdbcConnection>(api_, options_, dialect_.driver, login_timeout);
  opened->execute(dialect_.begin_session);
  odbc::OdbcStatement row = opened->prepare(dialect_.read_schema);
  row.execute();
  const std::optional<std::wstring> schema = row.fetch() ? row.try_text(0) : std::nullopt;
  if (!schema) fail(StoreErrorKind::unavailable, "the user has no schema");
  if (row.integer(1) != 1) fail(StoreErrorKind::foreign, "the database does not keep its texts as UTF-8");
  schema_ = *schema;
  connection_ = std::move(opened);
}

void ServerSession::refuse(const odbc::OdbcError& error) {
  StoreErrorKind kind = server_error_kind(error.state());
  const auto says = [&](const std::string& text) {
    return !text.empty() && std::string_view(error.what()).find(text) != std::string_view::npos;
  };
  // The driver has one state for all refusals of a connection.
  if (says(dialect_.driver.missing_password) || says(dialect_.driver.wrong_password))
    kind = StoreErrorKind::login_refused;
  else if (kind == StoreErrorKind::unreachable && std::ranges::any_of(dialect_.driver.no_connection_left, says))
    kind = StoreErrorKind::overloaded;
  // A driver has no state of its own for a connection that ended while it prepared a statement.
  if (kind == StoreErrorKind::unavailable && connection_ && connection_->is_lost())
    kind = StoreErrorKind::connection_lost;
  if (!keeps_connection(kind)) connection_.reset();
  // Whoever knows which name another rule has, has said so before.
  throw StoreError(kind, kind == StoreErrorKind::duplicate_name ? std::wstring() : description_, error.what());
}

std::wstring ServerSession::in_schema(std::wstring sql) const {
  constexpr std::wstring_view placeholder = L"{schema}";
  for (std::size_t i = 0; (i = sql.find(placeholder, i)) != std::wstring::npos; i += schema_.size())
    sql.replace(i, placeholder.size(), schema_);
  return sql;
}

}  // namespace workbench
