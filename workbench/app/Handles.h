#pragma once

#include <windows.h>

#include <memory>

namespace workbench {

template <class Handle, auto Close>
struct HandleCloser {
  using pointer = Handle;
  void operator()(Handle handle) const noexcept { Close(handle); }
};

/// Owns one handle, for which null means none.
template <class Handle, auto Close>
using Owned = std::unique_ptr<void, HandleCloser<Handle, Close>>;

using OwnedMenu = Owned<HMENU, &DestroyMenu>;
using OwnedAccelerators = Owned<HACCEL, &DestroyAcceleratorTable>;
using OwnedFont = Owned<HFONT, &DeleteObject>;
using OwnedKey = Owned<HKEY, &RegCloseKey>;

}  // namespace workbench
