#include "RegistrySandbox.h"

#include <stdexcept>

#include "Owned.h"

namespace test_support {
namespace {

constexpr wchar_t classes_variable[] = L"ZD_REGISTRY_SANDBOX_CLASSES";
constexpr wchar_t user_variable[] = L"ZD_REGISTRY_SANDBOX_USER";

void join(HKEY root, const wchar_t* variable) {
  wchar_t path[256] = {};
  const DWORD length = GetEnvironmentVariableW(variable, path, ARRAYSIZE(path));
  if (length == 0 || length >= ARRAYSIZE(path)) return;
  base::RegistryKey key;
  RegOpenKeyExW(HKEY_CURRENT_USER, path, 0, KEY_ALL_ACCESS, key.put());
  // The root keeps a handle of its own.
  const bool joined = key && RegOverridePredefKey(root, key.get()) == ERROR_SUCCESS;
  if (!joined) throw std::runtime_error("the registry sandbox cannot be joined");
}

}  // namespace

RegistrySandbox::RegistrySandbox() {
  SetEnvironmentVariableW(classes_variable, classes_.path().c_str());
  SetEnvironmentVariableW(user_variable, user_.path().c_str());
}

RegistrySandbox::~RegistrySandbox() {
  SetEnvironmentVariableW(classes_variable, nullptr);
  SetEnvironmentVariableW(user_variable, nullptr);
}

void join_registry_sandbox() {
  // The user's root is redirected last, because both paths start there.
  join(HKEY_CLASSES_ROOT, classes_variable);
  join(HKEY_CURRENT_USER, user_variable);
}

}  // namespace test_support
