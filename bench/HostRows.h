#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ExpirationRule.h"

namespace bench {

struct HostRow {
  std::wstring name;
  long rule_id;
};

/// The names and numbers of all rules, by the same host calls as a refill of the list and no others.
std::vector<HostRow> read_rows(const StorageBlock& storage);

/// One rule, by the same host calls as the editor.
ExpirationRule read_rule(const StorageBlock& storage, long rule_id);

}  // namespace bench
