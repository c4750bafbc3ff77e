#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "AnswerDialog.h"
#include "Record.h"

namespace snagtrap {

/// The text identifier of the caption under which a kind of record is shown to the user; nothing for kinds that are
/// only logged: traces, and kinds that the library does not know.
std::optional<UINT> caption_of(const Record& record);

/// What the user is shown of a record. `logged` is how writing it to the log went.
ReportText report_text(const Record& record, UINT caption, HRESULT logged);

/// Lines of the log (UTF-8) as an edit control shows them.
std::wstring recent_text(std::string_view lines);

}  // namespace snagtrap
