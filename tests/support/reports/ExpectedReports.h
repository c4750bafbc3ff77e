#pragma once

#include <string>
#include <vector>

#include "Recorder.h"

namespace test_support {

/// The reports since the last call, or since the test began, as `reports` writes them. Every test of a program that
/// links this must take its reports: a report that is left fails the test.
std::vector<std::string> take_reports();

/// The same with every line number replaced by "*": for locations whose line is not fixed.
std::vector<std::string> take_reports_without_lines();

/// The same as records, with all their fields.
std::vector<RecordedCommand> take_records();

/// Called inside every command from now on, until reports are taken or the test ends.
void on_command(Recorder::Hook hook);

}  // namespace test_support
