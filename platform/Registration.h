#pragma once

#include <windows.h>

#include <string_view>

#include "RegistryScript.h"

namespace platform {

/// Where a module registers itself.
enum class RegistrationScope { machine, user };

/// Runs the module's own script resource (type "REGISTRY", UTF-8 text). Throws a `_com_error` with the first failure.
void run_registration_script(int resource_id, const Replacements& replacements, RegistrationScope scope);
/// Takes away what the script writes; what is missing already is no failure.
void run_unregistration_script(int resource_id, const Replacements& replacements, RegistrationScope scope);

/// Registers the type library in the module's resources. Throws a `_com_error` with the failure.
void register_type_library(RegistrationScope scope);
void unregister_type_library(RegistrationScope scope);

/// A GUID as the registry writes it: in braces, upper case.
std::wstring guid_text(const GUID& guid);

/// Sets the thread's locale to the system default for a scope, so that registration does not depend on the caller's.
class ScopedSystemLocale {
 public:
  ScopedSystemLocale() noexcept : previous_(GetThreadLocale()) { SetThreadLocale(LOCALE_SYSTEM_DEFAULT); }
  ~ScopedSystemLocale() { SetThreadLocale(previous_); }
  ScopedSystemLocale(const ScopedSystemLocale&) = delete;
  ScopedSystemLocale& operator=(const ScopedSystemLocale&) = delete;

 private:
  LCID previous_;
};

}  // namespace platform
