#pragma once

#include "ComSupport.h"
#include "HostStorage.h"

using IkvStoragePtr = platform::ComPtr<IkvStorage>;
using IkvStorageSessionPtr = platform::ComPtr<IkvStorageSession>;
using IkvSymbolSourceServicePtr = platform::ComPtr<IkvSymbolSourceService>;
using IkvExpirationRuleServicePtr = platform::ComPtr<IkvExpirationRuleService>;
using IkvRuleFilterPtr = platform::ComPtr<IkvRuleFilter>;
using IkvTablePtr = platform::ComPtr<IKV_kvudfcom::IkvTable>;
using IkvFieldPtr = platform::ComPtr<IKV_kvudfcom::IkvField>;

/// The host's storage object by its four interfaces. The plug-in owns the one block; both dialogs are given its
/// address. The entries are released from the last to the first.
struct StorageBlock {
  IkvStoragePtr storage;                     ///< entry 1, the main interface
  IkvStorageSessionPtr session;              ///< entry 2
  IkvSymbolSourceServicePtr symbol_sources;  ///< entry 3; null until it is needed when the host gave none
  IkvExpirationRuleServicePtr rules;         ///< entry 4
};
