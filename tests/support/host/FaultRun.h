#pragma once

#include <functional>

#include "RecordingHost.h"

namespace test_support {

/// What a host can answer instead of doing its work.
const std::vector<Fault>& every_fault();

/// What a host answers that is gone: every call fails from one on.
inline constexpr Fault lost_host = {RPC_E_DISCONNECTED, Fault::Out::untouched, true};

/// A fault in words, as in "E_FAIL, out untouched".
std::string described(const Fault& fault);

/// Runs `scenario` again and again on a new host, and each time has another call of the host fail: the first, the
/// second and so on, until none fails in a run. The scenario calls `arm` when the calls are to count from,
/// `QueryInterface` among them. Everything must be released after each run. Stops at the first failure and names the
/// call. Answers how many calls have been failed.
std::size_t fail_each_call(const Fault& fault,
                           const std::function<void(RecordingHost& host, const std::function<void()>& arm)>& scenario);

}  // namespace test_support
