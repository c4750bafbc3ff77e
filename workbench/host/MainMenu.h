#pragma once

#include <windows.h>
#include <comdef.h>

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "CommandTargets.h"
#include "HostMenu.h"

namespace workbench {

/// The part of a window's main menu that plug-ins extend. The COM objects created from it hold it weakly: after its
/// destruction they return RPC_E_DISCONNECTED.
class MainMenu : public std::enable_shared_from_this<MainMenu> {
 public:
  /// `bar` belongs to a window that outlives this object. New submenus stand before the last `trailing` items of the
  /// bar. `changed` is called after each change of the bar.
  MainMenu(HMENU bar, int trailing, CommandTargets& targets, std::function<void()> changed);

  HMENU bar() const noexcept { return bar_; }
  CommandTargets& targets() const noexcept { return targets_; }

  /// The submenu whose caption is exactly this one; null when there is none.
  HMENU find_submenu(const std::wstring& caption) const;
  /// Throws `_com_error` when the system refuses.
  HMENU add_submenu(const std::wstring& caption, const std::wstring& hint);
  /// Appends a command and returns its id. Throws `_com_error` when the system refuses.
  long add_command(HMENU submenu, const std::wstring& caption, IDispatch* target);

  /// The hint that came with a submenu, for the status bar; empty when there is none.
  const std::wstring& hint(HMENU submenu) const;

  /// A new COM object of this menu for plug-ins, with one reference that belongs to the caller.
  IkvMainMenu* create_dispatch();

 private:
  HMENU bar_;
  int trailing_;
  CommandTargets& targets_;
  std::function<void()> changed_;
  std::map<HMENU, std::wstring> hints_;
};

}  // namespace workbench
