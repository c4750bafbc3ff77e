#pragma once

#include <functional>
#include <memory>

#include "ForwardingRuleStore.h"

namespace workbench {

/// A store of which each call shows its progress, so that the user can cancel one that takes long because another
/// program holds the store or because it is large. It then throws `schedule::Cancelled`, and nothing has changed.
class ProgressRuleStore final : public ForwardingRuleStore {
 public:
  /// Creates what shows the progress of one call. It belongs to the function and is destroyed with it.
  using CreateProgress = std::function<schedule::Progress()>;

  ProgressRuleStore(std::shared_ptr<RuleStore> store, CreateProgress create_progress);

  /// Shows no progress: it never waits.
  bool poll_for_changes() override { return store().poll_for_changes(); }

 private:
  void run(const std::function<void()>& call) override;

  CreateProgress create_progress_;
};

}  // namespace workbench
