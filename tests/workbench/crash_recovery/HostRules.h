#pragma once

#include <vector>

#include "RuleStream.h"
#include "StorageBlock.h"

/// The rules of the host that runs this plug-in, read and changed by the module's own functions for the host's
/// tables. What the host refuses is thrown as a `_com_error`.
class HostRules {
 public:
  /// `storage` is the host's storage object.
  explicit HostRules(IUnknown* storage);

  /// The numbers and names of all rules, as the list shows them.
  std::vector<workbench::StoredRule> load() const;

  /// Applies a change as its user would; a rule that a setting uses is not removed.
  void apply(const StreamChange& change);

 private:
  void add(const workbench::Rule& rule);
  void update(long number, const workbench::Rule& rule);
  void remove(long number);

  StorageBlock storage_;
};
