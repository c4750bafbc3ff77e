#pragma once

#include "DispatchObject.h"
#include "HostOnly.h"
#include "HostStorage.h"

namespace workbench {

/// The host's rule filter. A new one selects every rule.
class RuleFilterObject final : public DispatchObject<IkvRuleFilter, IRuleFilterAccess> {
 public:
  HRESULT STDMETHODCALLTYPE SetRuleID(long ruleId) noexcept override {
    rule_number_ = ruleId;
    return S_OK;
  }

  long rule_number() const noexcept override { return rule_number_; }

  KV_UNUSED_SLOT(7)

 private:
  long rule_number_ = 0;
};

}  // namespace workbench
