#pragma once

#include <windows.h>

#include "Registration.h"

namespace zd_expiration_rule_plugin {

/// The module as COM sees it: what it registers, and whether it can be unloaded.
class CzdExpirationRulesModule {
 public:
  /// False when the objects that the module shares could not be created.
  bool initialised() const noexcept;
  bool can_unload() const noexcept;

  /// Writes the AppID, the class and the type library, in this order; stops at the first failure and returns it.
  /// Reports nothing.
  HRESULT register_server() const noexcept;
  /// Removes them in the reverse order.
  HRESULT unregister_server() const noexcept;

  /// Where the module registers itself: for the machine unless this is set otherwise.
  platform::RegistrationScope scope = platform::RegistrationScope::machine;

 private:
  platform::Replacements replacements() const;
};

}  // namespace zd_expiration_rule_plugin
