#pragma once

#include <windows.h>

namespace test_support {

/// The automation library's registration for one user, which not every system separates from that for the machine:
/// while it lives, `RegisterTypeLibForUser` and `UnRegisterTypeLibForUser`, as this program looks them up, do their
/// work below HKEY_CURRENT_USER\Software\Classes. One lives at a time.
class PerUserTypeLibraries {
 public:
  PerUserTypeLibraries();
  ~PerUserTypeLibraries();
  PerUserTypeLibraries(const PerUserTypeLibraries&) = delete;
  PerUserTypeLibraries& operator=(const PerUserTypeLibraries&) = delete;

  /// From now on both functions do nothing and return this.
  void fail(HRESULT result);
  /// From now on the system has neither function; looking one up leaves this last error.
  void remove(DWORD last_error);
};

}  // namespace test_support
