#pragma once

#include "RuleRecord.h"
#include "ServerSession.h"

namespace workbench {

/// Brings the store's tables to the present version, within a call of the session. Creates and fills them where there
/// are none, if `may_create` is set, in one transaction that only one workbench at a time can be in. Tables of our
/// names without our version are `foreign`, those of a newer one `newer`, and no tables are `missing`; they stay as
/// they are.
void prepare_schema(ServerSession& session, const StoreContent& first_content, bool may_create);

}  // namespace workbench
