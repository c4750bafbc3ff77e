#pragma once

#include <memory>
#include <string>
#include <vector>

#include "FilledBlock.h"
#include "HostClasses.h"

namespace bench {

/// Names of rules, each one once, in an order that is not theirs.
std::vector<std::wstring> rule_names(int count);

/// Rules in memory, and the reference host's objects over them, whose classes are registered in this process while it
/// lives. Rules are numbered from 1 on in the order of their names here.
class RuleHost {
 public:
  explicit RuleHost(const std::vector<std::wstring>& names);

  /// A new storage object.
  base::ComPtr<IDispatch> storage() const;
  /// Such an object as both dialogs work on it.
  StorageBlock storage_block() const { return test_support::filled_block(storage()); }

 private:
  std::shared_ptr<workbench::RuleStore> store_;
  workbench::HostClasses classes_;
};

}  // namespace bench
