#include "StoreMessages.h"

#include "Texts.h"
#include "resource.h"

namespace workbench {

std::wstring store_message(const StoreError& error) {
  return text(IDS_STORE_READ_ONLY + static_cast<UINT>(error.kind()), {error.subject()});
}

}  // namespace workbench
