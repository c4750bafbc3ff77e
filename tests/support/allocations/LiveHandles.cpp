#include "LiveHandles.h"

#include <map>
#include <tuple>
#include <utility>

#include "ReplacedFunction.h"

namespace test_support {
namespace {

enum class Kind { gdi_object, memory_dc, window_dc, key };

std::map<std::pair<Kind, void*>, const char*> live;
int count = 0;

template <class Handle>
Handle acquired(Kind kind, const char* function, Handle handle) {
  if (!handle) return handle;
  ++count;
  live[{kind, handle}] = function;
  return handle;
}

template <class Result>
Result released(Kind kind, void* handle, Result success) {
  if (success) live.erase({kind, handle});
  return success;
}

/// A function that returns a new handle.
template <FunctionName name, Kind kind, class Handle, class... Arguments>
struct AcquireHook {
  static Handle WINAPI call(Arguments... arguments) { return acquired(kind, name.text, original(arguments...)); }
  inline static Handle(WINAPI* original)(Arguments...);
};

/// A function that opens a key into one of its arguments.
template <FunctionName name, class... Arguments>
struct OpenHook {
  static LSTATUS WINAPI call(Arguments... arguments) {
    const LSTATUS status = original(arguments...);
    if (status == ERROR_SUCCESS) acquired(Kind::key, name.text, *std::get<PHKEY>(std::tuple(arguments...)));
    return status;
  }
  inline static LSTATUS(WINAPI* original)(Arguments...);
};

/// A function that releases the handle that is one of its arguments.
template <Kind kind, std::size_t handle, class Result, class... Arguments>
struct ReleaseHook {
  static Result WINAPI call(Arguments... arguments) {
    return released(kind, std::get<handle>(std::tuple(arguments...)), original(arguments...));
  }
  inline static Result(WINAPI* original)(Arguments...);
};

template <FunctionName name, Kind kind, class Handle, class... Arguments>
ReplacedFunction acquiring(Handle(WINAPI*)(Arguments...)) {
  return ReplacedFunction::by<AcquireHook<name, kind, Handle, Arguments...>>(name.text);
}

template <FunctionName name, class... Arguments>
ReplacedFunction opening(LSTATUS(WINAPI*)(Arguments...)) {
  return ReplacedFunction::by<OpenHook<name, Arguments...>>(name.text);
}

template <FunctionName name, Kind kind, std::size_t handle, class Result, class... Arguments>
ReplacedFunction releasing(Result(WINAPI*)(Arguments...)) {
  return ReplacedFunction::by<ReleaseHook<kind, handle, Result, Arguments...>>(name.text);
}

/// A key counts as closed whatever RegCloseKey returns.
struct CloseHook {
  static LSTATUS WINAPI call(HKEY key) {
    released(Kind::key, key, true);
    return original(key);
  }
  inline static decltype(&RegCloseKey) original;
};

const std::vector<ReplacedFunction>& functions() {
  static const std::vector<ReplacedFunction> all = {
      acquiring<"CreateFontIndirectW", Kind::gdi_object>(CreateFontIndirectW),
      acquiring<"CreateBitmap", Kind::gdi_object>(CreateBitmap),
      acquiring<"CreateCompatibleBitmap", Kind::gdi_object>(CreateCompatibleBitmap),
      acquiring<"CreatePolygonRgn", Kind::gdi_object>(CreatePolygonRgn),
      acquiring<"CreateRectRgn", Kind::gdi_object>(CreateRectRgn),
      acquiring<"CreateRectRgnIndirect", Kind::gdi_object>(CreateRectRgnIndirect),
      releasing<"DeleteObject", Kind::gdi_object, 0>(DeleteObject),
      // From then on the system owns the region.
      releasing<"SetWindowRgn", Kind::gdi_object, 1>(SetWindowRgn),
      acquiring<"CreateCompatibleDC", Kind::memory_dc>(CreateCompatibleDC),
      releasing<"DeleteDC", Kind::memory_dc, 0>(DeleteDC),
      acquiring<"GetDC", Kind::window_dc>(GetDC),
      releasing<"ReleaseDC", Kind::window_dc, 1>(ReleaseDC),
      opening<"RegCreateKeyExW">(RegCreateKeyExW),
      opening<"RegOpenKeyExW">(RegOpenKeyExW),
      ReplacedFunction::by<CloseHook>("RegCloseKey"),
  };
  return all;
}

}  // namespace

LiveHandles::LiveHandles(HMODULE module) {
  live.clear();
  count = 0;
  replace_imports(module, functions(), patches_);
}

LiveHandles::~LiveHandles() = default;

std::vector<std::string> LiveHandles::left() const {
  std::vector<std::string> names;
  for (const auto& [handle, function] : live) names.emplace_back(function);
  return names;
}

int LiveHandles::acquired() const { return count; }

}  // namespace test_support
