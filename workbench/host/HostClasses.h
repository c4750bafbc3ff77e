#pragma once

#include <objbase.h>
#include <windows.h>

#include <array>
#include <functional>
#include <memory>

#include "ComPtr.h"
#include "RuleStore.h"

namespace workbench {

/// Called for each failure of the store in a call of a client of the host's objects, after the call's HRESULT is
/// decided, so that the host can show it. `unsaved` is the rule that the client wanted to store, null when it wanted
/// something else. It must not throw.
using StoreFailureListener = std::function<void(const StoreError& error, const Rule* unsaved)>;

/// Called when a client asked for a rule by a number that the store did not have, and then added a rule while it still
/// held the table that it had got: another program deleted the rule meanwhile. What it throws is dropped.
using RestoredRuleListener = std::function<void(const StoredRule& added)>;

/// The functions that are called for what happens in the host's objects; either may be empty.
struct StoreListeners {
  StoreFailureListener failed;
  RestoredRuleListener restored;
};

/// Creates a storage object: `IkvStorage`, `IkvStorageSession`, `IkvSymbolSourceService` and `IkvExpirationRuleService`
/// over this store, which it shares. The caller owns the one reference.
IDispatch* create_storage_object(std::shared_ptr<RuleStore> store, StoreListeners listeners);

/// A class of the host and the object that creates its instances.
struct HostClass {
  CLSID clsid;
  base::ComPtr<IClassFactory> factory;
};

using HostClassObjects = std::array<HostClass, 3>;

/// Creates the class objects of `kvStorage`, `kvTable` and `kvRuleFilter`, in this order, over this store.
HostClassObjects create_class_objects(const std::shared_ptr<RuleStore>& store, const StoreListeners& listeners);

/// While it lives, this process serves the host's classes to itself. Constructed and destroyed on a thread whose
/// apartment is initialised. Throws `_com_error` when a class cannot be registered.
class HostClasses {
 public:
  explicit HostClasses(const HostClassObjects& objects);
  HostClasses(const std::shared_ptr<RuleStore>& store, const StoreListeners& listeners);
  HostClasses(const HostClasses&) = delete;
  HostClasses& operator=(const HostClasses&) = delete;
  ~HostClasses();

 private:
  void revoke() noexcept;

  std::array<DWORD, std::tuple_size_v<HostClassObjects>> cookies_{};
};

}  // namespace workbench
