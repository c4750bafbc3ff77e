#pragma once

#include "ServerRuleStore.h"
#include "ServerSession.h"

namespace workbench {

/// Brings the store's tables to the present version, within a call of the session. Creates and fills them where there
/// are none, if `options` say so, in one transaction that only one workbench at a time can be in. Tables of our
/// names without our version are `foreign`, those of a newer one `newer`, and no tables are `missing`; they stay as
/// they are.
void prepare_schema(ServerSession& session, const ServerStoreOptions& options);

}  // namespace workbench
