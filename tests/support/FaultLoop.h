#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

namespace test_support {

/// How long a fault lasts: for one call, or for every call from that one on.
enum class FaultDuration { once, lasting };

/// Decides which of the calls that an injector sees fails. Allocates no memory.
class FaultCounter {
 public:
  /// The calls count from now on, and the `number`th fails, counted from 1; 0 fails none.
  void arm(std::size_t number, FaultDuration duration = FaultDuration::once) noexcept {
    *this = {};
    fatal_ = number;
    duration_ = duration;
  }
  /// From now on nothing fails.
  void clear_faults() noexcept { fatal_ = 0; }

  /// Counts one call and returns whether it fails.
  bool next_call_fails() noexcept {
    ++calls_;
    const bool fails = fatal_ != 0 && (calls_ == fatal_ || (calls_ > fatal_ && duration_ == FaultDuration::lasting));
    has_failed_ = has_failed_ || fails;
    return fails;
  }
  /// Whether a call has failed since it was armed.
  bool has_failed() const noexcept { return has_failed_; }

 private:
  std::size_t fatal_ = 0;
  std::size_t calls_ = 0;
  FaultDuration duration_ = FaultDuration::once;
  bool has_failed_ = false;
};

/// Runs something again and again while another of its calls fails: the first, the second and so on, until none is
/// left to fail. `run` plays it once with call `number` failing, whatever kind of call that is, and returns the call
/// that failed; nothing when it was over before. Stops at the first failure of the test and names the call. Returns how
/// many calls have failed.
std::size_t fail_each_call(const std::function<std::optional<std::string>(std::size_t number)>& run);

/// The same for allocations: `run` returns whether allocation `number` failed.
std::size_t fail_each_allocation(const std::function<bool(std::size_t number)>& run);

}  // namespace test_support
