#include "Registration.h"

#include <oleauto.h>

#include <string>

#include "ComPtr.h"
#include "Hresult.h"
#include "ModulePath.h"
#include "Owned.h"
#include "TextEncoding.h"

namespace platform {

namespace {

using Removal = RegistryNode::Removal;
using RegisterFunction = HRESULT(STDMETHODCALLTYPE*)(ITypeLib*, LPOLESTR, LPOLESTR);
using UnregisterFunction = HRESULT(STDMETHODCALLTYPE*)(REFGUID, WORD, WORD, LCID, SYSKIND);

void check(LSTATUS status) { base::throw_if_failed(base::hresult_from_status(status)); }

void check_unless_missing(LSTATUS status) {
  if (status != ERROR_FILE_NOT_FOUND && status != ERROR_PATH_NOT_FOUND) check(status);
}

std::wstring script_text(int resource_id) {
  const HINSTANCE module = base::module_instance();
  HRSRC found = FindResourceW(module, MAKEINTRESOURCEW(resource_id), L"REGISTRY");
  HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
  const auto* bytes = loaded ? static_cast<const char*>(LockResource(loaded)) : nullptr;
  if (!bytes) base::throw_last_failure();
  return base::from_utf8({bytes, SizeofResource(module, found)});
}

/// The key that stands for the classes root in a scope.
base::RegistryKey classes_root(RegistrationScope scope) {
  base::RegistryKey root;
  const bool user = scope == RegistrationScope::user;
  check(RegCreateKeyExW(user ? HKEY_CURRENT_USER : HKEY_CLASSES_ROOT, user ? L"Software\\Classes" : L"", 0, nullptr, 0,
                        KEY_READ | KEY_WRITE, nullptr, root.put(), nullptr));
  return root;
}

void write_value(HKEY key, const RegistryValue& value) {
  if (value.is_number) {
    check(RegSetValueExW(key, value.name.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&value.number),
                         sizeof value.number));
    return;
  }
  const auto bytes = static_cast<DWORD>((value.text.size() + 1) * sizeof(wchar_t));
  check(RegSetValueExW(key, value.name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(value.text.c_str()), bytes));
}

/// Writes a key with its values and keys in the order of the script.
void write_key(HKEY parent, const RegistryNode& node) {
  if (node.removal == Removal::complete) check_unless_missing(RegDeleteTreeW(parent, node.name.c_str()));
  base::RegistryKey key;
  check(RegCreateKeyExW(parent, node.name.c_str(), 0, nullptr, 0, KEY_READ | KEY_WRITE, nullptr, key.put(), nullptr));
  auto child = node.keys.begin();
  for (const RegistryValue& value : node.values) {
    const auto next = node.keys.begin() + static_cast<std::ptrdiff_t>(value.keys_before);
    for (; child < next; ++child) write_key(key.get(), *child);
    write_value(key.get(), value);
  }
  for (; child != node.keys.end(); ++child) write_key(key.get(), *child);
}

bool is_empty(HKEY key) {
  DWORD keys = 0;
  DWORD values = 0;
  check(RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                         nullptr));
  return keys == 0 && values == 0;
}

void remove_keys(HKEY parent, const std::vector<RegistryNode>& nodes);

// What other programs added below a key of the module is theirs: the key is deleted only when it is empty.
void remove_own_content(HKEY parent, const RegistryNode& node) {
  base::RegistryKey key;
  const LSTATUS opened = RegOpenKeyExW(parent, node.name.c_str(), 0, KEY_READ | KEY_WRITE, key.put());
  check_unless_missing(opened);
  if (opened != ERROR_SUCCESS) return;
  remove_keys(key.get(), node.keys);
  for (const RegistryValue& value : node.values) {
    check_unless_missing(RegDeleteValueW(key.get(), value.name.c_str()));
  }
  if (node.removal == Removal::none || !is_empty(key.get())) return;
  key.reset();
  check_unless_missing(RegDeleteKeyW(parent, node.name.c_str()));
}

void remove_keys(HKEY parent, const std::vector<RegistryNode>& nodes) {
  for (const RegistryNode& node : nodes) {
    if (node.removal == Removal::complete) {
      check_unless_missing(RegDeleteTreeW(parent, node.name.c_str()));
    } else {
      remove_own_content(parent, node);
    }
  }
}

/// The per-user functions exist only on newer systems, so they are looked up.
template <class Function>
Function automation_function(const char* name) {
  HMODULE automation = GetModuleHandleW(L"oleaut32.dll");
  const auto function = reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(automation, name)));
  if (!function) base::throw_last_failure();
  return function;
}

base::ComPtr<ITypeLib> own_type_library(const std::wstring& path) {
  base::ComPtr<ITypeLib> library;
  base::throw_if_failed(
      base::fetch_into(library, [&](ITypeLib** out) { return LoadTypeLibEx(path.c_str(), REGKIND_NONE, out); }));
  return library;
}

}  // namespace

void run_registration_script(int resource_id, const Replacements& replacements, RegistrationScope scope) {
  const base::RegistryKey root = classes_root(scope);
  for (const RegistryNode& node : parse_registry_script(script_text(resource_id), replacements)) {
    write_key(root.get(), node);
  }
}

void run_unregistration_script(int resource_id, const Replacements& replacements, RegistrationScope scope) {
  remove_keys(classes_root(scope).get(), parse_registry_script(script_text(resource_id), replacements));
}

void register_type_library(RegistrationScope scope) {
  std::wstring path = base::module_file_name();
  const base::ComPtr<ITypeLib> library = own_type_library(path);
  const auto function = scope == RegistrationScope::user
                            ? automation_function<RegisterFunction>("RegisterTypeLibForUser")
                            : automation_function<RegisterFunction>("RegisterTypeLib");
  base::throw_if_failed(function(library, path.data(), nullptr));
}

void unregister_type_library(RegistrationScope scope) {
  const base::ComPtr<ITypeLib> library = own_type_library(base::module_file_name());
  TLIBATTR* attributes = nullptr;
  base::throw_if_failed(library->GetLibAttr(&attributes));
  const TLIBATTR kept = *attributes;
  library->ReleaseTLibAttr(attributes);
  const auto function = scope == RegistrationScope::user
                            ? automation_function<UnregisterFunction>("UnRegisterTypeLibForUser")
                            : automation_function<UnregisterFunction>("UnRegisterTypeLib");
  base::throw_if_failed(function(kept.guid, kept.wMajorVerNum, kept.wMinorVerNum, kept.lcid, kept.syskind));
}

std::wstring guid_text(const GUID& guid) {
  wchar_t text[39] = {};
  StringFromGUID2(guid, text, 39);
  return text;
}

}  // namespace platform
