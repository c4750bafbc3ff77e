#pragma once

#include <windows.h>
#include <comdef.h>

#include <memory>
#include <vector>

#include "CommandTargets.h"
#include "HostMenu.h"
#include "Owned.h"

namespace workbench {

/// The hot keys that plug-ins have registered, as an accelerator table. The COM objects created from it hold it
/// weakly: after its destruction they return RPC_E_DISCONNECTED.
class HotKeys : public std::enable_shared_from_this<HotKeys> {
 public:
  explicit HotKeys(CommandTargets& targets) : targets_(targets) {}

  /// Registers a key and returns its command's id. `flags` and `key` are those of an `ACCEL`. A key that is registered
  /// already is reassigned to the new target. Throws `_com_error`: E_INVALIDARG for a key that no accelerator can be.
  long add(long flags, long key, IDispatch* target);

  /// The table of all keys; null while there are none. Valid until the next key is added.
  HACCEL accelerators() const noexcept { return table_.get(); }

  /// A new COM object of this collection for plug-ins, with one reference that belongs to the caller.
  IkvHotKeyCollection* create_dispatch();

 private:
  CommandTargets& targets_;
  std::vector<ACCEL> keys_;
  base::AcceleratorTable table_;
};

}  // namespace workbench
