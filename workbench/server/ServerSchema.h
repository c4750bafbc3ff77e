#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "ServerRuleStore.h"
#include "ServerSession.h"

namespace workbench {

/// Brings the store's tables to the present version, within a call of the session. Creates and fills them where there
/// are none, if `options` say so, in one transaction that only one workbench at a time can be in. Tables of our
/// names without our version are `foreign`, those of a newer one `newer`, and no tables are `missing`; they stay as
/// they are. `commit` commits that transaction, which takes the id; it is not called when there is nothing to do. After
/// it nothing can fail. Returns the counter of changes.
std::int64_t prepare_schema(ServerSession& session, const ServerStoreOptions& options, const std::wstring& id,
                            const std::function<void(odbc::OdbcTransaction& transaction)>& commit);

/// Whether the transaction of `prepare_schema` that took the id has happened. It never will if it has not: it is waited
/// for while it is under way, and a wait that takes too long throws.
bool settle_preparation(ServerSession& session, const std::wstring& id);

}  // namespace workbench
