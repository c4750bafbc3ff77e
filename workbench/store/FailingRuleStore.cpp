#include "FailingRuleStore.h"

namespace workbench {

FailingRuleStore::FailingRuleStore(std::shared_ptr<RuleStore> store, int failing_call, StoreErrorKind kind)
    : ForwardingRuleStore(std::move(store)), failing_call_(failing_call), kind_(kind) {}

void FailingRuleStore::run(const std::function<void()>& call) {
  if (++calls_ == failing_call_)
    throw StoreError(kind_, std::to_wstring(calls_), "call " + std::to_string(calls_) + " fails on purpose");
  call();
}

}  // namespace workbench
