#pragma once

#include "HostStorage.h"
#include "PrivateInterfaces.h"
#include "UnusedSlots.h"

namespace workbench {

/// The host's rule filter. A new one selects every rule.
class RuleFilterObject final : public RuleFilterSlots<DispatchObject<IkvRuleFilter, IRuleFilterAccess>> {
 public:
  HRESULT STDMETHODCALLTYPE SetRuleID(long ruleId) noexcept override {
    rule_number_ = ruleId;
    return S_OK;
  }

  long rule_number() const noexcept override { return rule_number_; }

 private:
  long rule_number_ = 0;
};

}  // namespace workbench
