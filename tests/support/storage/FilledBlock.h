#pragma once

#include "StorageBlock.h"

namespace test_support {

/// The host's storage object by all of its interfaces. Throws `_com_error` when one is missing.
inline StorageBlock filled_block(IUnknown* storage) {
  return {base::query<IkvStorage>(storage), base::query<IkvStorageSession>(storage),
          base::query<IkvSymbolSourceService>(storage), base::query<IkvExpirationRuleService>(storage)};
}

}  // namespace test_support
