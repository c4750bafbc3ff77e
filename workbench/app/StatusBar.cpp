#include "StatusBar.h"

#include <commctrl.h>

#include "FrameGeometry.h"
#include "ModulePath.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

namespace {

enum Part { message_part, count_part, store_part };

}  // namespace

StatusBar::StatusBar(HWND parent, UINT id)
    : handle_(CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0, parent,
                              reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), base::module_instance(), nullptr)) {}

void StatusBar::use_font(HFONT font) { SendMessageW(handle_, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE); }

void StatusBar::follow_parent(int width, int dpi) {
  StatusEdges edges = status_edges(width, dpi);
  SendMessageW(handle_, SB_SETPARTS, std::size(edges.edges), reinterpret_cast<LPARAM>(edges.edges));
  SendMessageW(handle_, WM_SIZE, 0, 0);
}

int StatusBar::height() const {
  RECT bar{};
  GetWindowRect(handle_, &bar);
  return bar.bottom - bar.top;
}

void StatusBar::show_message(const std::wstring& message) {
  message_ = message;
  set_part(message_part, message);
}

void StatusBar::show_rule_count(size_t count) { set_part(count_part, text(IDS_RULE_COUNT, {std::to_wstring(count)})); }

void StatusBar::show_store(const std::wstring& path) { set_part(store_part, text(IDS_STORE_PART, {path})); }

void StatusBar::show_hint(const std::wstring& hint) { set_part(message_part, hint.empty() ? message_ : hint); }

void StatusBar::set_part(int part, const std::wstring& value) {
  SendMessageW(handle_, SB_SETTEXTW, static_cast<WPARAM>(part), reinterpret_cast<LPARAM>(value.c_str()));
}

}  // namespace workbench
