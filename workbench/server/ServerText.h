#pragma once

#include <optional>
#include <string>
#include <utility>

#include "EscapedText.h"
#include "ServerSession.h"

namespace workbench {

/// The text of this escaped form. Throws `damaged` for what is no such form.
inline std::wstring read_text(ServerSession& session, std::wstring escaped) {
  std::optional<std::wstring> text = from_escaped_text(std::move(escaped));
  if (!text) session.fail(StoreErrorKind::damaged, "a text is not in its escaped form");
  return *std::move(text);
}

/// The text whose escaped form stands in this column of the row. Throws `damaged` for what is no such form.
inline std::wstring read_text(ServerSession& session, odbc::OdbcStatement& row, int column) {
  return read_text(session, row.text(column));
}

}  // namespace workbench
