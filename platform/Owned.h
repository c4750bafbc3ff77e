#pragma once

#include <windows.h>

#include <utility>

namespace platform {

/// Owns one handle. `Traits` name the handle type, the value that means "none" and how to release one.
template <class Traits>
class Owned {
 public:
  using Handle = typename Traits::Handle;

  Owned() noexcept = default;
  explicit Owned(Handle handle) noexcept : handle_(handle) {}
  Owned(Owned&& other) noexcept : handle_(other.detach()) {}
  Owned& operator=(Owned&& other) noexcept {
    if (this != &other) reset(other.detach());
    return *this;
  }
  ~Owned() { reset(); }

  Handle get() const noexcept { return handle_; }
  explicit operator bool() const noexcept { return handle_ != Traits::none(); }

  /// Releases what is held and takes `handle` instead.
  void reset(Handle handle = Traits::none()) noexcept {
    const Handle old = std::exchange(handle_, handle);
    if (old != Traits::none()) Traits::release(old);
  }

  /// Gives the handle away.
  Handle detach() noexcept { return std::exchange(handle_, Traits::none()); }

  /// Releases what is held and offers the place for a call that hands out a handle.
  Handle* put() noexcept {
    reset();
    return &handle_;
  }

 private:
  Handle handle_ = Traits::none();
};

struct RegistryKeyTraits {
  using Handle = HKEY;
  static Handle none() noexcept { return nullptr; }
  static void release(Handle key) noexcept { RegCloseKey(key); }
};
using RegistryKey = Owned<RegistryKeyTraits>;

struct ModuleTraits {
  using Handle = HMODULE;
  static Handle none() noexcept { return nullptr; }
  static void release(Handle module) noexcept { FreeLibrary(module); }
};
using LoadedModule = Owned<ModuleTraits>;

/// GDI objects that `DeleteObject` releases.
template <class GdiHandle>
struct GdiTraits {
  using Handle = GdiHandle;
  static Handle none() noexcept { return nullptr; }
  static void release(Handle object) noexcept { DeleteObject(object); }
};
using Font = Owned<GdiTraits<HFONT>>;
using Region = Owned<GdiTraits<HRGN>>;
using Bitmap = Owned<GdiTraits<HBITMAP>>;

struct MemoryDcTraits {
  using Handle = HDC;
  static Handle none() noexcept { return nullptr; }
  static void release(Handle dc) noexcept { DeleteDC(dc); }
};
using MemoryDc = Owned<MemoryDcTraits>;

}  // namespace platform
