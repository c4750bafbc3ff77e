#pragma once

#include "ComPtr.h"
#include "HostStorage.h"

using IkvStoragePtr = base::ComPtr<IkvStorage>;
using IkvStorageSessionPtr = base::ComPtr<IkvStorageSession>;
using IkvSymbolSourceServicePtr = base::ComPtr<IkvSymbolSourceService>;
using IkvExpirationRuleServicePtr = base::ComPtr<IkvExpirationRuleService>;
using IkvRuleFilterPtr = base::ComPtr<IkvRuleFilter>;
using IkvTablePtr = base::ComPtr<IKV_kvudfcom::IkvTable>;
using IkvFieldPtr = base::ComPtr<IKV_kvudfcom::IkvField>;

/// The host's storage object by its four interfaces. The plug-in owns the one block; both dialogs are given its
/// address. The entries are released from the last to the first. A call of the host may let another `Initialize`
/// replace them, so whoever calls an entry's object holds a reference of its own meanwhile.
struct StorageBlock {
  IkvStoragePtr storage;                     ///< entry 1, the main interface
  IkvStorageSessionPtr session;              ///< entry 2
  IkvSymbolSourceServicePtr symbol_sources;  ///< entry 3; null until it is needed when the host gave none
  IkvExpirationRuleServicePtr rules;         ///< entry 4
};
