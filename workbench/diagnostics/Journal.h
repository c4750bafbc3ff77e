#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Record.h"
#include "ReportLog.h"
#include "Settings.h"

namespace snagtrap {

/// Writes the log of one client: a line of JSON for each command, with time (UTC), process, thread, program, the
/// command word and its record.
class Journal {
 public:
  /// Sets the log folder that the program proposes; empty for none.
  void propose_directory(std::wstring_view directory) { proposed_directory_ = directory; }

  /// Writes a command and its record, which may be null. Cuts the texts of a record that does not fit into one log.
  HRESULT write(std::wstring_view command, const Record* record, const Settings& settings) const;

  /// Writes which button the user chose for a report.
  HRESULT write_answer(std::wstring_view answer, const Settings& settings) const;

  /// The log in the first of the folders.
  ReportLog log(const Settings& settings) const;

 private:
  HRESULT append(std::string_view line, bool to_disk, const Settings& settings) const;
  /// The log folders in the order in which `append` tries them: from the registry, proposed, default.
  std::vector<std::wstring> directories(const Settings& settings) const;

  std::wstring proposed_directory_;
};

}  // namespace snagtrap
