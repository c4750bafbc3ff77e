#pragma once

#include "ForwardingRuleStore.h"

namespace workbench {

/// Passes every call on to another store, except one, which fails before it reaches that store.
class FailingRuleStore final : public ForwardingRuleStore {
 public:
  /// The call that comes `failing_call`-th, counted from 1, fails with an error of this kind; 0: none does.
  FailingRuleStore(std::shared_ptr<RuleStore> store, int failing_call,
                   StoreErrorKind kind = StoreErrorKind::unavailable);

  /// How many calls have come so far.
  int calls() const noexcept { return calls_; }

  void set_progress(const schedule::Progress& progress) override { store().set_progress(progress); }

 private:
  void run(const std::function<void()>& call) override;

  int failing_call_;
  StoreErrorKind kind_;
  int calls_ = 0;
};

}  // namespace workbench
