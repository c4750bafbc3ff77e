#include "ScreenReader.h"

#include <commctrl.h>

#include "RemoteMemory.h"

namespace tour {

namespace {

constexpr UINT timeout_ms = 10'000;
constexpr size_t longest_text = 1024;

DWORD_PTR ask(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
  DWORD_PTR answer = 0;
  SendMessageTimeoutW(window, message, wparam, lparam, SMTO_ABORTIFHUNG, timeout_ms, &answer);
  return answer;
}

std::wstring text_of(HWND window) {
  std::wstring text(longest_text, L'\0');
  text.resize(ask(window, WM_GETTEXT, longest_text, reinterpret_cast<LPARAM>(text.data())));
  return text;
}

std::wstring class_of(HWND window) {
  wchar_t name[256] = L"";
  GetClassNameW(window, name, static_cast<int>(std::size(name)));
  return name;
}

void add_rect(Line& line, const RECT& rect) {
  for (const LONG value : {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top})
    line.push_back(std::to_wstring(value));
}

RECT rect_of(HWND window) {
  RECT rect{};
  GetWindowRect(window, &rect);
  return rect;
}

HWND focus_of(HWND window) {
  GUITHREADINFO info{};
  info.cbSize = sizeof(info);
  GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &info);
  return info.hwndFocus;
}

std::wstring state_of(HWND window) {
  std::wstring state = IsWindowEnabled(window) ? L"enabled" : L"disabled";
  if (class_of(window) == WC_BUTTONW && ask(window, BM_GETCHECK, 0, 0) == BST_CHECKED) state += L",checked";
  if (focus_of(window) == window) state += L",focused";
  return state;
}

using Windows = std::vector<HWND>;

BOOL CALLBACK collect_visible(HWND window, LPARAM windows) {
  if (IsWindowVisible(window)) reinterpret_cast<Windows*>(windows)->push_back(window);
  return TRUE;
}

Windows top_level_windows() {
  Windows windows;
  EnumWindows(&collect_visible, reinterpret_cast<LPARAM>(&windows));
  return windows;
}

Windows windows_with_title(const std::wstring& title) {
  Windows windows;
  for (HWND window : top_level_windows())
    if (text_of(window) == title) windows.push_back(window);
  return windows;
}

/// The visible control with this identifier, which may lie within another control.
HWND find_control(const std::wstring& title, int id) {
  for (HWND window : windows_with_title(title)) {
    Windows controls;
    EnumChildWindows(window, &collect_visible, reinterpret_cast<LPARAM>(&controls));
    for (HWND control : controls)
      if (GetDlgCtrlID(control) == id) return control;
  }
  return nullptr;
}

/// Reads one list view through memory that its process lends: an item or a rectangle, and behind it a text.
class ListReader {
 public:
  explicit ListReader(HWND list) : list_(list), memory_(list, text_offset + longest_text * sizeof(wchar_t)) {}

  Line row(int index) const {
    Line line;
    add_rect(line, item_rect(index));
    line.push_back(state(index));
    for (int column = 0; column < column_count(); ++column) line.push_back(cell(index, column));
    return line;
  }

  int row_count() const { return static_cast<int>(ask(list_, LVM_GETITEMCOUNT, 0, 0)); }

 private:
  static constexpr size_t text_offset = sizeof(LVITEMW);

  int column_count() const {
    const auto header = reinterpret_cast<HWND>(ask(list_, LVM_GETHEADER, 0, 0));
    return static_cast<int>(ask(header, HDM_GETITEMCOUNT, 0, 0));
  }

  RECT item_rect(int index) const {
    RECT rect{};
    rect.left = LVIR_BOUNDS;
    memory_.write(0, &rect, sizeof(rect));
    ask(list_, LVM_GETITEMRECT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(memory_.at(0)));
    memory_.read(0, &rect, sizeof(rect));
    MapWindowPoints(list_, nullptr, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
  }

  std::wstring state(int index) const {
    const DWORD_PTR bits = ask(list_, LVM_GETITEMSTATE, static_cast<WPARAM>(index), LVIS_SELECTED | LVIS_FOCUSED);
    if (bits == (LVIS_SELECTED | LVIS_FOCUSED)) return L"selected,focused";
    if (bits == LVIS_SELECTED) return L"selected";
    return bits == LVIS_FOCUSED ? L"focused" : L"-";
  }

  std::wstring cell(int index, int column) const {
    LVITEMW item{};
    item.iSubItem = column;
    item.cchTextMax = static_cast<int>(longest_text);
    item.pszText = static_cast<wchar_t*>(memory_.at(text_offset));
    memory_.write(0, &item, sizeof(item));
    std::wstring text(ask(list_, LVM_GETITEMTEXTW, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(memory_.at(0))),
                      L'\0');
    memory_.read(text_offset, text.data(), text.size() * sizeof(wchar_t));
    return text;
  }

  HWND list_;
  RemoteMemory memory_;
};

}  // namespace

std::vector<Line> read_windows() {
  std::vector<Line> lines;
  for (HWND window : top_level_windows()) {
    Line line{text_of(window), class_of(window)};
    add_rect(line, rect_of(window));
    line.push_back(IsWindowEnabled(window) ? L"enabled" : L"disabled");
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<Line> read_controls(const std::wstring& title) {
  Windows controls;
  for (HWND window : windows_with_title(title))
    EnumChildWindows(window, &collect_visible, reinterpret_cast<LPARAM>(&controls));

  std::vector<Line> lines;
  for (HWND control : controls) {
    Line line{std::to_wstring(GetDlgCtrlID(control)), class_of(control)};
    add_rect(line, rect_of(control));
    line.push_back(state_of(control));
    line.push_back(text_of(control));
    lines.push_back(std::move(line));
  }
  return lines;
}

std::vector<Line> read_rows(const std::wstring& title, int id) {
  std::vector<Line> lines;
  HWND list = find_control(title, id);
  if (!list) return lines;
  const ListReader reader(list);
  const int count = reader.row_count();
  for (int index = 0; index < count; ++index) lines.push_back(reader.row(index));
  return lines;
}

std::vector<Line> read_parts(const std::wstring& title, int id) {
  std::vector<Line> lines;
  HWND bar = find_control(title, id);
  if (!bar) return lines;
  const RemoteMemory memory(bar, longest_text * sizeof(wchar_t));
  const DWORD_PTR count = ask(bar, SB_GETPARTS, 0, 0);
  for (WPARAM part = 0; part < count; ++part) {
    std::wstring text(LOWORD(ask(bar, SB_GETTEXTLENGTHW, part, 0)), L'\0');
    ask(bar, SB_GETTEXTW, part, reinterpret_cast<LPARAM>(memory.at(0)));
    memory.read(0, text.data(), text.size() * sizeof(wchar_t));
    lines.push_back({text});
  }
  return lines;
}

}  // namespace tour
