#pragma once

#include <cstddef>

namespace test_support {

/// While it lives, the `number`th allocation by `new` of this program, counted from 1, throws `std::bad_alloc`. 0 fails
/// none until `fail_next`. One lives at a time; UI thread only.
class FailingNew {
 public:
  explicit FailingNew(std::size_t number = 0);
  ~FailingNew();
  FailingNew(const FailingNew&) = delete;
  FailingNew& operator=(const FailingNew&) = delete;

  void fail_next();
  /// Whether the allocation that was to fail has come.
  bool has_failed() const;
};

}  // namespace test_support
