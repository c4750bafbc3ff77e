#include "RegistryTree.h"

#include <stdexcept>
#include <vector>

#include "Owned.h"

namespace test_support {
namespace {

base::RegistryKey open_key(HKEY root, const std::wstring& path) {
  base::RegistryKey key;
  RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put());
  return key;
}

base::RegistryKey create_key(HKEY root, const std::wstring& path, DWORD options) {
  base::RegistryKey key;
  if (RegCreateKeyExW(root, path.c_str(), 0, nullptr, options, KEY_READ | KEY_WRITE, nullptr, key.put(), nullptr) !=
      ERROR_SUCCESS) {
    throw std::runtime_error("a registry key cannot be created");
  }
  return key;
}

std::wstring value_text(DWORD type, const std::vector<BYTE>& data) {
  if (type == REG_DWORD && data.size() == sizeof(DWORD)) {
    return L"d:" + std::to_wstring(*reinterpret_cast<const DWORD*>(data.data()));
  }
  if (type == REG_SZ && data.size() >= sizeof(wchar_t)) {
    // One closing zero belongs to the type; a second one would be a mistake that must be seen.
    return L"s:" + std::wstring(reinterpret_cast<const wchar_t*>(data.data()), data.size() / sizeof(wchar_t) - 1);
  }
  return L"type " + std::to_wstring(type) + L", " + std::to_wstring(data.size()) + L" bytes";
}

void add_values(HKEY key, const std::wstring& path, RegistryTree& tree) {
  for (DWORD index = 0;; ++index) {
    std::wstring name(16384, L'\0');
    std::vector<BYTE> data(65536);
    auto name_length = static_cast<DWORD>(name.size());
    auto size = static_cast<DWORD>(data.size());
    DWORD type = 0;
    if (RegEnumValueW(key, index, name.data(), &name_length, nullptr, &type, data.data(), &size) != ERROR_SUCCESS) {
      return;
    }
    name.resize(name_length);
    data.resize(size);
    tree[path + L"\\" + (name.empty() ? L"@" : name)] = value_text(type, data);
  }
}

void add_key(HKEY key, const std::wstring& path, RegistryTree& tree) {
  add_values(key, path, tree);
  for (DWORD index = 0;; ++index) {
    std::wstring name(256, L'\0');
    auto length = static_cast<DWORD>(name.size());
    if (RegEnumKeyExW(key, index, name.data(), &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) return;
    name.resize(length);
    const std::wstring below = path.empty() ? name : path + L"\\" + name;
    tree[below + L"\\"] = {};
    if (const base::RegistryKey child = open_key(key, name)) add_key(child.get(), below, tree);
  }
}

void add_missing(const wchar_t* mark, const RegistryTree& from, const RegistryTree& other,
                 std::vector<std::wstring>& lines) {
  for (const auto& [name, text] : from) {
    const auto found = other.find(name);
    if (found == other.end() || found->second != text) lines.push_back(mark + name + L" " + text);
  }
}

}  // namespace

std::vector<std::wstring> differences(const RegistryTree& first, const RegistryTree& second) {
  std::vector<std::wstring> lines;
  add_missing(L"- ", first, second, lines);
  add_missing(L"+ ", second, first, lines);
  return lines;
}

RegistryTree registry_tree(HKEY root, const std::wstring& path) {
  RegistryTree tree;
  if (const base::RegistryKey key = open_key(root, path)) add_key(key.get(), {}, tree);
  return tree;
}

void delete_registry_tree(HKEY root, const std::wstring& path) { RegDeleteTreeW(root, path.c_str()); }

bool registry_key_exists(HKEY root, const std::wstring& path) { return static_cast<bool>(open_key(root, path)); }

std::wstring registry_text(HKEY root, const std::wstring& path, const std::wstring& name) {
  std::wstring text(32768, L'\0');
  auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
  if (RegGetValueW(root, path.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, text.data(), &size) != ERROR_SUCCESS) {
    return {};
  }
  text.resize(size / sizeof(wchar_t) - 1);
  return text;
}

std::vector<BYTE> registry_bytes(HKEY root, const std::wstring& path, const std::wstring& name) {
  std::vector<BYTE> bytes(65536);
  auto size = static_cast<DWORD>(bytes.size());
  const LSTATUS status =
      RegGetValueW(root, path.c_str(), name.c_str(), RRF_RT_REG_BINARY, nullptr, bytes.data(), &size);
  bytes.resize(status == ERROR_SUCCESS ? size : 0);
  return bytes;
}

void write_registry_value(HKEY root, const std::wstring& path, const std::wstring& name, DWORD type, const void* data,
                          std::size_t size) {
  const base::RegistryKey key = create_key(root, path, REG_OPTION_NON_VOLATILE);
  if (RegSetValueExW(key.get(), name.c_str(), 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size)) !=
      ERROR_SUCCESS) {
    throw std::runtime_error("a registry value cannot be written");
  }
}

void write_registry_text(HKEY root, const std::wstring& path, const std::wstring& name, const std::wstring& text) {
  write_registry_value(root, path, name, REG_SZ, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
}

void write_registry_number(HKEY root, const std::wstring& path, const std::wstring& name, DWORD number) {
  write_registry_value(root, path, name, REG_DWORD, &number, sizeof number);
}

void create_volatile_key(HKEY root, const std::wstring& path) { create_key(root, path, REG_OPTION_VOLATILE); }

}  // namespace test_support
