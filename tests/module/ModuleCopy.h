#pragma once

#include <filesystem>
#include <string>

namespace module_test {

/// A copy of the built module in a folder of its own, which is removed at the end.
class ModuleCopy {
 public:
  /// `folder` is the folder's name below the temporary files. Throws `std::filesystem::filesystem_error`.
  explicit ModuleCopy(const std::wstring& folder);
  ~ModuleCopy();
  ModuleCopy(const ModuleCopy&) = delete;
  ModuleCopy& operator=(const ModuleCopy&) = delete;

  const std::filesystem::path& folder() const { return folder_; }
  std::wstring path() const { return folder_ / L"zdExpirationRules.dll"; }

 private:
  std::filesystem::path folder_;
};

/// Folder names in which spaces, quotes, braces, percent signs and letters beyond ASCII stand.
inline const wchar_t* const odd_folders[] = {L"zd plain", L"zd a b 'quoted' {x} = s", L"zd %APPID% 100%",
                                             L"zd \u5230\u671f\u89c4\u5219 \u00e9\u20ac"};

}  // namespace module_test
