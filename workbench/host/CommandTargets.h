#pragma once

#include <windows.h>

#include <map>

#include "ComPtr.h"

namespace workbench {

/// The commands that plug-ins have added to the main menu and to the hot keys: each id with the object to call.
class CommandTargets {
 public:
  /// Plug-in commands have the ids from `first_id` to `last_id`; the host's own commands lie below.
  static constexpr long first_id = 0x8000;
  static constexpr long last_id = 0xEFFF;

  /// Keeps a reference on `target`. Returns the new command's id; throws `std::length_error` when no id is left.
  long add(base::ComPtr<IDispatch> target);

  void remove(long id) noexcept;

  /// Calls `DoCommand(id, VT_EMPTY)` on the command's target: through its method table when it has `IkvPlugin`, else
  /// by name. DISP_E_BADINDEX when there is no such command. The target stays alive during the call, whatever the
  /// call does to the table.
  HRESULT run(long id) noexcept;

  /// Releases every target.
  void clear() noexcept;

 private:
  std::map<long, base::ComPtr<IDispatch>> targets_;
  long next_id_ = first_id;
};

}  // namespace workbench
