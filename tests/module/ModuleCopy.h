#pragma once

#include <filesystem>
#include <string>

#include "TemporaryFolder.h"

namespace module_test {

/// A copy of the built module in a folder of its own, which is removed at the end.
class ModuleCopy {
 public:
  /// The folder's name begins with `folder`. Throws `std::filesystem::filesystem_error`.
  explicit ModuleCopy(const std::wstring& folder);

  const std::filesystem::path& folder() const { return folder_.path(); }
  std::wstring path() const { return folder() / L"zdExpirationRules.dll"; }

 private:
  test_support::TemporaryFolder folder_;
};

/// Folder names in which spaces, quotes, braces, percent signs and letters beyond ASCII stand.
inline const wchar_t* const odd_folders[] = {L"zd plain", L"zd a b 'quoted' {x} = s", L"zd %APPID% 100%",
                                             L"zd \u5230\u671f\u89c4\u5219 \u00e9\u20ac"};

}  // namespace module_test
