#include "PerUserTypeLibraries.h"

#include <oleauto.h>

#include <optional>
#include <string_view>

#include "ImportProbe.h"
#include "Owned.h"

ZD_IMPORT_PROBE(GetProcAddress, ProcAddressProbe);

namespace test_support {
namespace {

HRESULT failure = S_OK;
std::optional<ProcAddressProbe> probe;

/// While it lives, what is written below the classes root is written to the user's classes.
class ScopedUserClasses {
 public:
  ScopedUserClasses() {
    // Opening a root under an empty name returns the key that it is redirected to.
    RegCreateKeyExW(HKEY_CLASSES_ROOT, L"", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, before_.put(), nullptr);
    RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, users_.put(),
                    nullptr);
    RegOverridePredefKey(HKEY_CLASSES_ROOT, users_.get());
  }
  ~ScopedUserClasses() { RegOverridePredefKey(HKEY_CLASSES_ROOT, before_.get()); }
  ScopedUserClasses(const ScopedUserClasses&) = delete;
  ScopedUserClasses& operator=(const ScopedUserClasses&) = delete;

 private:
  base::RegistryKey before_;
  base::RegistryKey users_;
};

HRESULT STDMETHODCALLTYPE register_for_user(ITypeLib* library, LPOLESTR path, LPOLESTR help_folder) {
  if (FAILED(failure)) return failure;
  const ScopedUserClasses classes;
  return RegisterTypeLib(library, path, help_folder);
}

HRESULT STDMETHODCALLTYPE unregister_for_user(REFGUID id, WORD major, WORD minor, LCID locale, SYSKIND system) {
  if (FAILED(failure)) return failure;
  const ScopedUserClasses classes;
  return UnRegisterTypeLib(id, major, minor, locale, system);
}

template <class Function>
FARPROC address(Function* function) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(function));
}

FARPROC look_up(HMODULE module, LPCSTR name) {
  // The parameter may be an ordinal instead of a name.
  const std::string_view function = HIWORD(name) != 0 ? name : "";
  if (function == "RegisterTypeLibForUser") return address(&register_for_user);
  if (function == "UnRegisterTypeLibForUser") return address(&unregister_for_user);
  return probe->original(module, name);
}

}  // namespace

PerUserTypeLibraries::PerUserTypeLibraries() { probe.emplace().replace(&look_up); }

PerUserTypeLibraries::~PerUserTypeLibraries() {
  probe.reset();
  failure = S_OK;
}

void PerUserTypeLibraries::fail(HRESULT result) { failure = result; }

void PerUserTypeLibraries::remove(DWORD last_error) { probe->fail(0, nullptr, last_error); }

}  // namespace test_support
