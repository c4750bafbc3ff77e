#pragma once

#include <string>

#include "EscapedText.h"
#include "ServerSession.h"

namespace workbench {

/// The text whose escaped form stands in this column of the row. Throws `damaged` for what is no such form.
inline std::wstring read_text(ServerSession& session, odbc::OdbcStatement& row, int column) {
  std::optional<std::wstring> text = from_escaped_text(row.text(column));
  if (!text) session.fail(StoreErrorKind::damaged, "a text is not in its escaped form");
  return *std::move(text);
}

}  // namespace workbench
