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

/// The names and numbers of all rules, by the host calls that a refill of the list makes and nothing else.
std::vector<HostRow> read_rows(const StorageBlock& storage);

/// One rule, by the host calls that an editor makes.
ExpirationRule read_rule(const StorageBlock& storage, long rule_id);

}  // namespace bench
