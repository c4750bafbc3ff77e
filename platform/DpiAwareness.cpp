#include "DpiAwareness.h"

namespace platform {

namespace {

/// Systems before Windows 10 1607 do not have these functions, so they are looked up.
template <class Function>
Function find_user_function(const char* name) noexcept {
  HMODULE library = GetModuleHandleW(L"user32.dll");
  return library ? reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name))) : nullptr;
}

#define ZD_FIND_USER_FUNCTION(name) find_user_function<decltype(&::name)>(#name)

bool is_per_monitor_aware() noexcept {
  const auto get_context = ZD_FIND_USER_FUNCTION(GetThreadDpiAwarenessContext);
  const auto get_awareness = ZD_FIND_USER_FUNCTION(GetAwarenessFromDpiAwarenessContext);
  return get_context && get_awareness && get_awareness(get_context()) == DPI_AWARENESS_PER_MONITOR_AWARE;
}

}  // namespace

ScopedSystemDpiAwareness::ScopedSystemDpiAwareness() noexcept {
  if (!is_per_monitor_aware()) return;
  set_context_ = ZD_FIND_USER_FUNCTION(SetThreadDpiAwarenessContext);
  if (set_context_) previous_ = set_context_(DPI_AWARENESS_CONTEXT_SYSTEM_AWARE);
}

ScopedSystemDpiAwareness::~ScopedSystemDpiAwareness() {
  if (previous_) set_context_(previous_);
}

}  // namespace platform
