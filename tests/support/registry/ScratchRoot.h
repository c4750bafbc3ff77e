#pragma once

#include <windows.h>

#include <string>

#include "Owned.h"

namespace test_support {

/// Redirects HKEY_CLASSES_ROOT or another root of the registry to an empty scratch key, for this process and a scope.
/// Everything written there is deleted afterwards. One lives at a time for each root.
class ScratchRoot {
 public:
  /// Throws `std::runtime_error` when the registry refuses.
  explicit ScratchRoot(HKEY root);
  ~ScratchRoot();
  ScratchRoot(const ScratchRoot&) = delete;
  ScratchRoot& operator=(const ScratchRoot&) = delete;

  /// Where the scratch key lies below the user's real root.
  const std::wstring& path() const { return path_; }

 private:
  HKEY root_;
  std::wstring path_;
  base::RegistryKey key_;
};

}  // namespace test_support
