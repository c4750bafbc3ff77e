#include "RegistrySandbox.h"

#include <stdexcept>

namespace test_support {
namespace {

constexpr wchar_t sandboxes[] = L"Software\\zdExpirationRules tests\\";
constexpr wchar_t variable[] = L"ZD_REGISTRY_SANDBOX";

void require(LSTATUS status) {
  if (status != ERROR_SUCCESS) throw std::runtime_error("the registry sandbox cannot be made");
}

/// The predefined key keeps its own handle of the replacement.
void redirect(HKEY predefined, HKEY parent, const std::wstring& path) {
  HKEY key = nullptr;
  require(RegCreateKeyExW(parent, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr));
  const LSTATUS redirected = RegOverridePredefKey(predefined, key);
  RegCloseKey(key);
  require(redirected);
}

void enter(const std::wstring& path) {
  redirect(HKEY_CLASSES_ROOT, HKEY_CURRENT_USER, path + L"\\Classes");
  redirect(HKEY_CURRENT_USER, HKEY_CURRENT_USER, path + L"\\User");
}

void leave() {
  RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
  RegOverridePredefKey(HKEY_CLASSES_ROOT, nullptr);
}

}  // namespace

RegistrySandbox::RegistrySandbox() : path_(sandboxes + std::to_wstring(GetCurrentProcessId())) {
  leave();
  RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
  enter(path_);
  SetEnvironmentVariableW(variable, path_.c_str());
}

RegistrySandbox::~RegistrySandbox() {
  SetEnvironmentVariableW(variable, nullptr);
  leave();
  RegDeleteTreeW(HKEY_CURRENT_USER, path_.c_str());
}

void join_registry_sandbox() {
  wchar_t path[256] = {};
  const DWORD length = GetEnvironmentVariableW(variable, path, ARRAYSIZE(path));
  if (length != 0 && length < ARRAYSIZE(path)) enter(path);
}

void set_registry_text(HKEY root, const std::wstring& key, const wchar_t* value, const std::wstring& text) {
  require(RegSetKeyValueW(root, key.c_str(), value, REG_SZ, text.c_str(),
                          static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))));
}

void set_registry_number(HKEY root, const std::wstring& key, const wchar_t* value, DWORD number) {
  require(RegSetKeyValueW(root, key.c_str(), value, REG_DWORD, &number, sizeof number));
}

}  // namespace test_support
