#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "HostCalls.h"
#include "HostRule.h"
#include "PresetRuleStore.h"

namespace test_support {

/// What the host knows of each proxy that is referenced.
class LivingObject {
 public:
  virtual std::string description() const = 0;

 protected:
  ~LivingObject() = default;
};

/// What the proxies of one host share.
struct HostState {
  HostCalls calls;
  bool record_queries = false;
  HostRow odd_values;
  std::vector<HostRule> saves;
  std::map<long, IDispatch*> commands;
  std::set<const LivingObject*> living;
  std::function<void(const std::string& name)> released;
  std::shared_ptr<PresetRuleStore> store = std::make_shared<PresetRuleStore>();
};

}  // namespace test_support
