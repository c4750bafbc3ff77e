#include "MovedControls.h"

#include <algorithm>

#include "ChildLayout.h"
#include "DeviceContext.h"
#include "Owned.h"

namespace zd_expiration_rule_plugin::ui_helper {

namespace {

using base::Region;

Region rect_region(const RECT& rect) noexcept { return Region(CreateRectRgnIndirect(&rect)); }

void combine(const Region& region, const Region& with, int mode) noexcept {
  CombineRgn(region.get(), region.get(), with.get(), mode);
}

/// The height of the text in a group box's upper line.
LONG text_height(HWND group_box) noexcept {
  const base::ScopedClientDc dc(group_box);
  const auto font = reinterpret_cast<HFONT>(SendMessageW(group_box, WM_GETFONT, 0, 0));
  const base::ScopedSelectObject selected(dc.get(), font);
  TEXTMETRICW metrics = {};
  return GetTextMetricsW(dc.get(), &metrics) ? metrics.tmHeight : 0;
}

/// What a group box paints of its rectangle. The corners of a themed one are round.
Region group_box_lines(const RECT& rect, LONG height) noexcept {
  const LONG across = 2 * GetSystemMetrics(SM_CXEDGE);
  const LONG down = 2 * GetSystemMetrics(SM_CYEDGE);
  const RECT inner = {rect.left + across, rect.top + std::max(height, down), rect.right - across, rect.bottom - down};
  Region lines = rect_region(rect);
  combine(lines, rect_region(inner), RGN_DIFF);
  return lines;
}

}  // namespace

void CMovedControls::measure(HWND dialog) {
  controls_.clear();
  for (HWND window : resizable::children_of(dialog)) {
    wchar_t class_name[16] = {};
    GetClassNameW(window, class_name, ARRAYSIZE(class_name));
    const bool is_button = lstrcmpiW(class_name, L"Button") == 0;
    const bool is_grip = lstrcmpiW(class_name, L"ScrollBar") == 0;
    if (!is_button && !is_grip) continue;
    const bool is_group_box = is_button && (GetWindowLongW(window, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
    controls_.push_back({window, is_group_box, resizable::rect_in(dialog, window)});
  }
}

void CMovedControls::repaint(HWND dialog) noexcept {
  const Region outdated(CreateRectRgn(0, 0, 0, 0));
  bool moved = false;
  for (Control& control : controls_) {
    const RECT old_rect = control.rect;
    control.rect = resizable::rect_in(dialog, control.window);
    if (EqualRect(&old_rect, &control.rect)) continue;
    moved = true;
    if (control.is_group_box) {
      const LONG height = text_height(control.window);
      combine(outdated, group_box_lines(old_rect, height), RGN_OR);
      combine(outdated, group_box_lines(control.rect, height), RGN_OR);
    } else {
      const Region left_or_entered = rect_region(old_rect);
      combine(left_or_entered, rect_region(control.rect), RGN_XOR);
      combine(outdated, left_or_entered, RGN_OR);
    }
  }
  if (!moved) return;
  for (HWND window = GetWindow(dialog, GW_CHILD); window; window = GetWindow(window, GW_HWNDNEXT)) {
    const bool is_own = std::any_of(controls_.begin(), controls_.end(),
                                    [window](const Control& control) { return control.window == window; });
    if (!is_own && IsWindowVisible(window))
      combine(outdated, rect_region(resizable::rect_in(dialog, window)), RGN_DIFF);
  }
  InvalidateRgn(dialog, outdated.get(), TRUE);
}

}  // namespace zd_expiration_rule_plugin::ui_helper
