#pragma once

namespace test_support {

/// The exit code of a test program that crashed.
inline constexpr unsigned crash_exit_code = 87;

/// From now on a crash writes its code, the place in the program and the running test to stderr and ends the process;
/// no box and no debugger waits for anybody.
void report_crashes();

}  // namespace test_support
