#pragma once

namespace test_support {

/// Leaves an error object on the thread, as a host object does that fails on the way.
void leave_error_information();

/// Whether there is one. It is taken from the thread.
bool has_error_information();

}  // namespace test_support
