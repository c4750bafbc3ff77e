#pragma once

#include <windows.h>

#include <utility>

namespace base {

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

  /// Releases the owned handle and owns `handle` instead.
  void reset(Handle handle = Traits::none()) noexcept {
    const Handle old = std::exchange(handle_, handle);
    if (old != Traits::none()) Traits::release(old);
  }

  /// Returns the handle, which belongs to the caller from then on.
  Handle detach() noexcept { return std::exchange(handle_, Traits::none()); }

  /// Releases the owned handle and returns the address of the empty one, for a call with an out parameter.
  Handle* put() noexcept {
    reset();
    return &handle_;
  }

 private:
  Handle handle_ = Traits::none();
};

/// Handles for which null means none.
template <class HandleType, auto function>
struct NullableTraits {
  using Handle = HandleType;
  static Handle none() noexcept { return nullptr; }
  static void release(Handle handle) noexcept { function(handle); }
};

/// Owns a handle, or memory of the system, that `function` releases.
template <class HandleType, auto function>
using OwnedBy = Owned<NullableTraits<HandleType, function>>;

using RegistryKey = OwnedBy<HKEY, &RegCloseKey>;
using LoadedModule = OwnedBy<HMODULE, &FreeLibrary>;
using Font = OwnedBy<HFONT, &DeleteObject>;
using Region = OwnedBy<HRGN, &DeleteObject>;
using Bitmap = OwnedBy<HBITMAP, &DeleteObject>;
using MemoryDc = OwnedBy<HDC, &DeleteDC>;
using Menu = OwnedBy<HMENU, &DestroyMenu>;
using AcceleratorTable = OwnedBy<HACCEL, &DestroyAcceleratorTable>;

/// A process, thread, event, mutex or pipe.
using KernelHandle = OwnedBy<HANDLE, &CloseHandle>;

/// What `CreateFileW` and the like return, for which INVALID_HANDLE_VALUE means none.
struct FileTraits : NullableTraits<HANDLE, &CloseHandle> {
  static Handle none() noexcept { return INVALID_HANDLE_VALUE; }
};
using FileHandle = Owned<FileTraits>;

}  // namespace base
