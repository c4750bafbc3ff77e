#pragma once

namespace test_support {

/// The exit code of a test program that crashed.
inline constexpr unsigned crash_exit_code = 87;

/// From now on a crash writes its code, its address and the running test to stderr and ends the process; no message box
/// and no debugger opens.
void report_crashes();

}  // namespace test_support
