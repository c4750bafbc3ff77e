#include "LiveHandles.h"

#include <map>
#include <utility>

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

LSTATUS opened(const char* maker, LSTATUS status, const HKEY* key) {
  if (status == ERROR_SUCCESS) made(Kind::key, maker, *key);
  return status;
}

HFONT WINAPI create_font_indirect(const LOGFONTW* font) {
  return made(Kind::gdi_object, "CreateFontIndirectW", CreateFontIndirectW(font));
}
HBITMAP WINAPI create_bitmap(int width, int height, UINT planes, UINT bits, const void* data) {
  return made(Kind::gdi_object, "CreateBitmap", CreateBitmap(width, height, planes, bits, data));
}
HBITMAP WINAPI create_compatible_bitmap(HDC dc, int width, int height) {
  return made(Kind::gdi_object, "CreateCompatibleBitmap", CreateCompatibleBitmap(dc, width, height));
}
HRGN WINAPI create_polygon_region(const POINT* points, int number, int mode) {
  return made(Kind::gdi_object, "CreatePolygonRgn", CreatePolygonRgn(points, number, mode));
}
HRGN WINAPI create_rect_region(int left, int top, int right, int bottom) {
  return made(Kind::gdi_object, "CreateRectRgn", CreateRectRgn(left, top, right, bottom));
}
HRGN WINAPI create_rect_region_indirect(const RECT* rect) {
  return made(Kind::gdi_object, "CreateRectRgnIndirect", CreateRectRgnIndirect(rect));
}
BOOL WINAPI delete_object(HGDIOBJ object) { return given_back(Kind::gdi_object, object, DeleteObject(object)); }
// The system owns a region that it took.
int WINAPI set_window_region(HWND window, HRGN region, BOOL redraw) {
  return given_back(Kind::gdi_object, region, SetWindowRgn(window, region, redraw));
}

HDC WINAPI create_compatible_dc(HDC dc) { return made(Kind::memory_dc, "CreateCompatibleDC", CreateCompatibleDC(dc)); }
BOOL WINAPI delete_dc(HDC dc) { return given_back(Kind::memory_dc, dc, DeleteDC(dc)); }

HDC WINAPI get_dc(HWND window) { return made(Kind::window_dc, "GetDC", GetDC(window)); }
int WINAPI release_dc(HWND window, HDC dc) { return given_back(Kind::window_dc, dc, ReleaseDC(window, dc)); }

LSTATUS WINAPI create_key(HKEY parent, LPCWSTR path, DWORD reserved, LPWSTR class_name, DWORD options, REGSAM access,
                          const LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition) {
  return opened("RegCreateKeyExW",
                RegCreateKeyExW(parent, path, reserved, class_name, options, access, security, key, disposition), key);
}
LSTATUS WINAPI open_key(HKEY parent, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
  return opened("RegOpenKeyExW", RegOpenKeyExW(parent, path, options, access, key), key);
}
LSTATUS WINAPI close_key(HKEY key) {
  const LSTATUS status = RegCloseKey(key);
  given_back(Kind::key, key, status == ERROR_SUCCESS);
  return status;
}

struct Function {
  const char* name;
  void* counting;
};

const Function functions[] = {
    {"CreateFontIndirectW", reinterpret_cast<void*>(create_font_indirect)},
    {"CreateBitmap", reinterpret_cast<void*>(create_bitmap)},
    {"CreateCompatibleBitmap", reinterpret_cast<void*>(create_compatible_bitmap)},
    {"CreatePolygonRgn", reinterpret_cast<void*>(create_polygon_region)},
    {"CreateRectRgn", reinterpret_cast<void*>(create_rect_region)},
    {"CreateRectRgnIndirect", reinterpret_cast<void*>(create_rect_region_indirect)},
    {"DeleteObject", reinterpret_cast<void*>(delete_object)},
    {"SetWindowRgn", reinterpret_cast<void*>(set_window_region)},
    {"CreateCompatibleDC", reinterpret_cast<void*>(create_compatible_dc)},
    {"DeleteDC", reinterpret_cast<void*>(delete_dc)},
    {"GetDC", reinterpret_cast<void*>(get_dc)},
    {"ReleaseDC", reinterpret_cast<void*>(release_dc)},
    {"RegCreateKeyExW", reinterpret_cast<void*>(create_key)},
    {"RegOpenKeyExW", reinterpret_cast<void*>(open_key)},
    {"RegCloseKey", reinterpret_cast<void*>(close_key)},
};

}  // namespace

LiveHandles::LiveHandles(HMODULE module) {
  live.clear();
  count = 0;
  for (const Function& function : functions) {
    if (imports(module, function.name)) patches_.emplace_back(module, function.name, function.counting);
  }
}

LiveHandles::~LiveHandles() = default;

std::vector<std::string> LiveHandles::left() const {
  std::vector<std::string> makers;
  for (const auto& [handle, maker] : live) makers.emplace_back(maker);
  return makers;
}

int LiveHandles::made() const { return count; }

}  // namespace test_support
