#pragma once

#include <windows.h>

#include <deque>
#include <string>
#include <vector>

#include "ImportPatch.h"

namespace test_support {

/// While it lives, tracks the GDI objects, device contexts and registry keys that a loaded module creates or opens: the
/// test platform counts none of them. One lives at a time; UI thread only.
class LiveHandles {
 public:
  explicit LiveHandles(HMODULE module);
  ~LiveHandles();
  LiveHandles(const LiveHandles&) = delete;
  LiveHandles& operator=(const LiveHandles&) = delete;

  /// The function that returned each handle that the module has not released.
  std::vector<std::string> left() const;
  /// How many handles the module has had so far.
  int acquired() const;

 private:
  std::deque<ImportPatch> patches_;
};

}  // namespace test_support
