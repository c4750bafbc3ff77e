#pragma once

#include <windows.h>

#include <map>
#include <string>
#include <vector>

namespace test_support {

/// Everything below a registry key. A key stands as its path with a closing backslash and no text, a value as
/// "path\name" (the default value as "path\@") with its text: "s:text", "d:number" or "type N, M bytes". Paths are
/// relative to the key and keep the case they were written in.
using RegistryTree = std::map<std::wstring, std::wstring>;

/// Empty when the key does not exist.
RegistryTree registry_tree(HKEY root, const std::wstring& path = {});

/// What differs between two trees, one line an entry: "- " before what only the first has, "+ " before what only the
/// second has.
std::vector<std::wstring> differences(const RegistryTree& first, const RegistryTree& second);

/// Deletes a key and everything below it; a missing key is no failure.
void delete_registry_tree(HKEY root, const std::wstring& path);

bool registry_key_exists(HKEY root, const std::wstring& path);

/// The text of a value; empty when there is none.
std::wstring registry_text(HKEY root, const std::wstring& path, const std::wstring& name = {});

/// The bytes of a binary value; none when it is missing or of another type.
std::vector<BYTE> registry_bytes(HKEY root, const std::wstring& path, const std::wstring& name);

/// These create the key when it is missing. They throw `std::runtime_error` when the registry refuses.
void write_registry_value(HKEY root, const std::wstring& path, const std::wstring& name, DWORD type, const void* data,
                          std::size_t size);
void write_registry_text(HKEY root, const std::wstring& path, const std::wstring& name, const std::wstring& text);
void write_registry_number(HKEY root, const std::wstring& path, const std::wstring& name, DWORD number);

/// Creates a key in which no lasting key can be created: the way to have a registry call fail. Throws
/// `std::runtime_error`.
void create_volatile_key(HKEY root, const std::wstring& path);

/// What a registry call returns below such a key.
inline constexpr HRESULT volatile_parent_failure = static_cast<HRESULT>(0x80070000 | ERROR_CHILD_MUST_BE_VOLATILE);

}  // namespace test_support
