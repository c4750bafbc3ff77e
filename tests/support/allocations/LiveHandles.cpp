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
Handle made(Kind kind, const char* maker, Handle handle) {
  if (!handle) return handle;
  ++count;
  live[{kind, handle}] = maker;
  return handle;
}

template <class Result>
Result given_back(Kind kind, void* handle, Result success) {
  if (success) live.erase({kind, handle});
  return success;
}

/// A function that answers a new handle.
template <FunctionName name, Kind kind, class Handle, class... Arguments>
struct AcquireHook {
  static Handle WINAPI call(Arguments... arguments) { return made(kind, name.text, original(arguments...)); }
  inline static Handle(WINAPI* original)(Arguments...);
};

/// A function that opens a key into one of its arguments.
template <FunctionName name, class... Arguments>
struct Opening {
  static LSTATUS WINAPI call(Arguments... arguments) {
    const LSTATUS status = original(arguments...);
    if (status == ERROR_SUCCESS) made(Kind::key, name.text, *std::get<PHKEY>(std::tuple(arguments...)));
    return status;
  }
  inline static LSTATUS(WINAPI* original)(Arguments...);
};

/// A function that takes a handle back as one of its arguments.
template <Kind kind, std::size_t handle, class Result, class... Arguments>
struct ReleaseHook {
  static Result WINAPI call(Arguments... arguments) {
    return given_back(kind, std::get<handle>(std::tuple(arguments...)), original(arguments...));
  }
  inline static Result(WINAPI* original)(Arguments...);
};

template <FunctionName name, Kind kind, class Handle, class... Arguments>
ReplacedFunction making(Handle(WINAPI*)(Arguments...)) {
  return ReplacedFunction::by<AcquireHook<name, kind, Handle, Arguments...>>(name.text);
}

template <FunctionName name, class... Arguments>
ReplacedFunction opening(LSTATUS(WINAPI*)(Arguments...)) {
  return ReplacedFunction::by<Opening<name, Arguments...>>(name.text);
}

template <FunctionName name, Kind kind, std::size_t handle, class Result, class... Arguments>
ReplacedFunction taking(Result(WINAPI*)(Arguments...)) {
  return ReplacedFunction::by<ReleaseHook<kind, handle, Result, Arguments...>>(name.text);
}

/// A key is gone whatever closing it answers.
struct Closing {
  static LSTATUS WINAPI call(HKEY key) {
    given_back(Kind::key, key, true);
    return original(key);
  }
  inline static decltype(&RegCloseKey) original;
};

const std::vector<ReplacedFunction>& functions() {
  static const std::vector<ReplacedFunction> all = {
      making<"CreateFontIndirectW", Kind::gdi_object>(CreateFontIndirectW),
      making<"CreateBitmap", Kind::gdi_object>(CreateBitmap),
      making<"CreateCompatibleBitmap", Kind::gdi_object>(CreateCompatibleBitmap),
      making<"CreatePolygonRgn", Kind::gdi_object>(CreatePolygonRgn),
      making<"CreateRectRgn", Kind::gdi_object>(CreateRectRgn),
      making<"CreateRectRgnIndirect", Kind::gdi_object>(CreateRectRgnIndirect),
      taking<"DeleteObject", Kind::gdi_object, 0>(DeleteObject),
      // The system owns a region that it took.
      taking<"SetWindowRgn", Kind::gdi_object, 1>(SetWindowRgn),
      making<"CreateCompatibleDC", Kind::memory_dc>(CreateCompatibleDC),
      taking<"DeleteDC", Kind::memory_dc, 0>(DeleteDC),
      making<"GetDC", Kind::window_dc>(GetDC),
      taking<"ReleaseDC", Kind::window_dc, 1>(ReleaseDC),
      opening<"RegCreateKeyExW">(RegCreateKeyExW),
      opening<"RegOpenKeyExW">(RegOpenKeyExW),
      ReplacedFunction::by<Closing>("RegCloseKey"),
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
  std::vector<std::string> makers;
  for (const auto& [handle, maker] : live) makers.emplace_back(maker);
  return makers;
}

int LiveHandles::made() const { return count; }

}  // namespace test_support
