#pragma once

#include <windows.h>

#include <string>

namespace test_support {

/// While it lives, HKEY_CURRENT_USER and HKEY_CLASSES_ROOT of this process are two keys of its own, empty at first, so
/// that a test neither sees nor changes the settings of the user and of tests that run beside it. Child processes that
/// call `join_registry_sandbox` share it. One lives at a time. Keys that the system opens past the Win32 registry
/// functions are not redirected.
class RegistrySandbox {
 public:
  /// Throws `std::runtime_error` when the keys cannot be made.
  RegistrySandbox();
  ~RegistrySandbox();
  RegistrySandbox(const RegistrySandbox&) = delete;
  RegistrySandbox& operator=(const RegistrySandbox&) = delete;

 private:
  std::wstring path_;
};

/// Called by a child process at its start: redirects its registry to the sandbox of its parent, if that has one.
void join_registry_sandbox();

void set_registry_text(HKEY root, const std::wstring& key, const wchar_t* value, const std::wstring& text);
void set_registry_number(HKEY root, const std::wstring& key, const wchar_t* value, DWORD number);

}  // namespace test_support
