#pragma once

#include <optional>
#include <string>

namespace workbench {

// Passwords that Windows keeps for its user. `target` is the name of what a password opens.

/// The password that is kept for this target; nothing when there is none or when it cannot be read.
std::optional<std::wstring> try_read_credential(const std::wstring& target) noexcept;

/// Keeps a password of this user of the target. Returns whether Windows took it.
bool try_write_credential(const std::wstring& target, const std::wstring& user, const std::wstring& password) noexcept;

/// Drops the password of this target, if there is one.
void drop_credential(const std::wstring& target) noexcept;

}  // namespace workbench
