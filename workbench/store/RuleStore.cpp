#include "RuleStore.h"

namespace workbench {

StoreSubscription RuleStore::subscribe(std::function<void()> changed) {
  auto subscriber = std::make_shared<const std::function<void()>>(std::move(changed));
  std::erase_if(subscribers_, [](const auto& other) { return other.expired(); });
  subscribers_.push_back(subscriber);
  return subscriber;
}

void RuleStore::notify_subscribers() noexcept {
  // A subscriber may add subscribers, which can move the list; those are not notified of this change.
  const std::size_t count = subscribers_.size();
  for (std::size_t i = 0; i < count && i < subscribers_.size(); ++i) {
    const auto subscriber = subscribers_[i].lock();
    if (!subscriber) continue;
    try {
      (*subscriber)();
    } catch (...) {
      continue;
    }
  }
}

}  // namespace workbench
