#pragma once

#include "ScratchRoot.h"

namespace test_support {

/// Scratch areas instead of HKEY_CURRENT_USER and HKEY_CLASSES_ROOT, which child processes that call
/// `join_registry_sandbox` share. Keys that the system opens past the Win32 registry functions are not redirected.
class RegistrySandbox {
 public:
  /// Throws `std::runtime_error` when the registry refuses.
  RegistrySandbox();
  ~RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;

 private:
  ScratchRoot classes_{HKEY_CLASSES_ROOT};
  ScratchRoot user_{HKEY_CURRENT_USER};
};

/// Called by a child process at its start: redirects its registry to the sandbox of its parent, if that has one.
void join_registry_sandbox();

}  // namespace test_support
