#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

#include "Record.h"
#include "ReportDialog.h"

namespace snagtrap {

/// The string identifier of the caption for a record of this kind; nothing for kinds that are logged and never shown:
/// traces, and kinds that the library does not know.
std::optional<UINT> caption_of(const Record& record);

/// The texts of the dialog that shows the record. `logged` is the result of writing it to the log.
ReportText report_text(const Record& record, UINT caption, HRESULT logged);

/// Lines of the log, in UTF-8, as the text of an edit control.
std::wstring recent_text(std::string_view lines);

}  // namespace snagtrap
