#pragma once

#include <string>
#include <vector>

#include "Recorder.h"

namespace test_support {

/// What was reported since the last call, or since the test began, as `reports` writes it. Whoever links this says
/// which reports he expects: a test that leaves some unread fails.
std::vector<std::string> take_reports();

/// The same with every line number replaced by "*": for locations whose line is not fixed.
std::vector<std::string> take_reports_without_lines();

/// The same as records, with all their fields.
std::vector<RecordedCommand> take_records();

/// Called inside every command from now on, until reports are taken or the test ends.
void on_command(Recorder::Hook hook);

}  // namespace test_support
