#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Record.h"
#include "ReportLog.h"
#include "Settings.h"

namespace snagtrap {

/// What one client writes to the log: a line of JSON for each command, with time (UTC), process, thread, program, the
/// command word and its record.
class Journal {
 public:
  /// The folder that the program wishes for; empty for none.
  void wish_for(std::wstring_view directory) { wished_directory_ = directory; }

  /// Writes a command and its record, if there is one. Texts of a record that would not fit into one log are cut.
  HRESULT write(std::wstring_view command, const Record* record, const Settings& settings) const;

  /// Writes what the user answered to a report.
  HRESULT write_answer(std::wstring_view answer, const Settings& settings) const;

  /// The log that lines go to as long as it can be written.
  ReportLog log(const Settings& settings) const;

 private:
  HRESULT append(std::string_view line, bool to_disk, const Settings& settings) const;
  /// In the order in which they are tried: the registry's, the wished one, the default one.
  std::vector<std::wstring> directories(const Settings& settings) const;

  std::wstring wished_directory_;
};

}  // namespace snagtrap
