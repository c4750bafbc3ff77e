#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "RuleRecord.h"

namespace workbench {

/// One rule or setting after a change.
struct ChangedRecord {
  long number = 0;
  Revision revision = 0;
};

/// By which a change is found again whose outcome is not known.
struct ChangeId {
  std::wstring text;             ///< empty: there is no such change
  bool prepares_tables = false;  ///< whether it creates, fills or migrates the store rather than changes its records

  bool operator==(const ChangeId&) const = default;
};

/// A change from the moment when it may have happened.
struct Commit {
  ChangeId change;
  ChangedRecord record;  ///< the record after it
  bool happened;         ///< false: it is not known whether it happened
};

/// What the thread of a store and the thread that waits for it both know of the last commit.
class CommitUnderWay {
 public:
  /// The store's thread is about to commit. Returns false once it was abandoned: then it must not.
  bool begin(const ChangeId& change, const ChangedRecord& record) {
    const std::scoped_lock lock(mutex_);
    if (abandoned_) return false;
    commit_ = Commit{change, record, false};
    return true;
  }

  /// The change has happened.
  void acknowledge() noexcept {
    const std::scoped_lock lock(mutex_);
    if (commit_) commit_->happened = true;
  }

  /// The change has not happened and never will.
  void forget() noexcept {
    const std::scoped_lock lock(mutex_);
    commit_.reset();
  }

  std::optional<Commit> last() const {
    const std::scoped_lock lock(mutex_);
    return commit_;
  }

  /// The store's thread commits nothing from now on. Returns the last commit that it began.
  std::optional<Commit> abandon() {
    const std::scoped_lock lock(mutex_);
    abandoned_ = true;
    return std::exchange(commit_, std::nullopt);
  }

 private:
  mutable std::mutex mutex_;
  bool abandoned_ = false;
  std::optional<Commit> commit_;
};

}  // namespace workbench
