#pragma once

#include <oaidl.h>

#include <memory>

#include "TableRows.h"

namespace workbench {

/// The host's services recognise its own tables and filters by these interfaces; no object of another implementation
/// supports them.
struct ITableAccess : IDispatch {
  virtual std::shared_ptr<TableRows> rows() noexcept = 0;
};

struct IRuleFilterAccess : IDispatch {
  /// 0: every rule.
  virtual long rule_number() const noexcept = 0;
};

}  // namespace workbench

__CRT_UUID_DECL(workbench::ITableAccess, 0xa0bfc0a8, 0x323c, 0x4cd3, 0xa5, 0x3e, 0x59, 0xf9, 0x42, 0xc8, 0x7f, 0xc0)
__CRT_UUID_DECL(workbench::IRuleFilterAccess, 0x1de80091, 0xb6a1, 0x49f9, 0x8b, 0x91, 0x56, 0x0f, 0x46, 0x35, 0x2f,
                0x38)
