#include "ProgressRuleStore.h"

#include <utility>

namespace workbench {

namespace {

/// Shows the progress of a store's calls as long as it lives.
class ScopedStoreProgress {
 public:
  ScopedStoreProgress(RuleStore& store, const schedule::Progress& progress) : store_(store) {
    store_.set_progress(progress);
  }
  ~ScopedStoreProgress() { store_.set_progress({}); }
  ScopedStoreProgress(const ScopedStoreProgress&) = delete;
  ScopedStoreProgress& operator=(const ScopedStoreProgress&) = delete;

 private:
  RuleStore& store_;
};

}  // namespace

ProgressRuleStore::ProgressRuleStore(std::shared_ptr<RuleStore> store, CreateProgress create_progress)
    : ForwardingRuleStore(std::move(store)), create_progress_(std::move(create_progress)) {}

void ProgressRuleStore::run(const std::function<void()>& call) {
  const ScopedStoreProgress progress(store(), create_progress_());
  call();
}

}  // namespace workbench
