#include "StoreMessages.h"

#include "RuleFormat.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

std::wstring store_message(const StoreError& error) {
  if (error.kind() == StoreErrorKind::duplicate_name && error.subject().empty()) return text(IDS_STORE_DUPLICATE_NAMES);
  return text(IDS_STORE_READ_ONLY + static_cast<UINT>(error.kind()), {error.subject()});
}

std::wstring store_failure(const StoreError& error, const Rule* unsaved) {
  const std::wstring reason = store_message(error);
  const bool uncertain = error.kind() == StoreErrorKind::uncertain;
  if (!unsaved) return uncertain ? reason : text(IDS_STORE_CALL_FAILED, {reason});
  return text(uncertain ? IDS_RULE_UNCERTAIN : IDS_RULE_NOT_SAVED,
              {reason, unsaved->name, format_offset(*unsaved), format_rule_day(*unsaved), format_move(*unsaved)});
}

}  // namespace workbench
