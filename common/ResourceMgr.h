#pragma once

#include <windows.h>

#include <string>

namespace zd_common_res {

/// Holds the host's shared resource module: loaded when the holder is created, freed when it is destroyed.
class CCommonRes {
 public:
  CCommonRes() noexcept = default;
  /// A module that cannot be loaded is reported as the assertion "hInstance" and leaves the holder empty.
  explicit CCommonRes(const wchar_t* file_name);
  ~CCommonRes();
  CCommonRes(const CCommonRes&) = delete;
  CCommonRes& operator=(const CCommonRes&) = delete;
  CCommonRes& operator=(CCommonRes&& other) noexcept;

  /// The module's handle. An empty one is reported as the assertion "hInstance" at every call.
  HINSTANCE instance() const noexcept;

 private:
  HINSTANCE instance_ = nullptr;
};

/// A string of the shared resource module "zdCommonRes.DLL", which is loaded at the first call and kept until this
/// module unloads. A missing module or string is reported as an assertion and reads as empty. May be called again while
/// such a report is shown. UI thread only. Throws `std::bad_alloc`.
std::wstring GetString(const unsigned int id);

}  // namespace zd_common_res
