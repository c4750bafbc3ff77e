#pragma once

#include <functional>

#include "RecordingHost.h"

namespace test_support {

/// What a host can do instead of its work, one call or, when it has ended, from one call on: every kind of it in a deep
/// run, one kind otherwise.
std::vector<Fault> faults_to_inject();

/// A fault in words, as in "E_FAIL, out untouched".
std::string described(const Fault& fault);

/// Plays `scenario` again and again on a new host, each time with another call of the host failing. The scenario calls
/// `arm` when the calls are to count from, `QueryInterface` among them. Everything must be released after each run.
std::size_t fail_each_call(const Fault& fault,
                           const std::function<void(RecordingHost& host, const std::function<void()>& arm)>& scenario);

}  // namespace test_support
