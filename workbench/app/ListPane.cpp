#include "ListPane.h"

#include <algorithm>

#include "ModulePath.h"
#include "Texts.h"

namespace workbench {

namespace {

constexpr DWORD list_style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_BORDER | LVS_REPORT | LVS_OWNERDATA |
                             LVS_SINGLESEL | LVS_SHOWSELALWAYS | LVS_NOSORTHEADER;
constexpr DWORD list_extended_style = LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP;

HWND create_child(HWND parent, UINT id, const wchar_t* window_class, DWORD style, const std::wstring& text) {
  return CreateWindowExW(0, window_class, text.c_str(), style, 0, 0, 0, 0, parent,
                         reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)), base::module_instance(), nullptr);
}

bool starts_with(const std::wstring& text, const std::wstring& beginning) {
  return text.size() >= beginning.size() &&
         CompareStringOrdinal(text.c_str(), static_cast<int>(beginning.size()), beginning.c_str(),
                              static_cast<int>(beginning.size()), TRUE) == CSTR_EQUAL;
}

}  // namespace

ListPane::ListPane(HWND parent, UINT id, UINT heading, std::span<const ListColumn> columns)
    : columns_(columns),
      heading_(create_child(parent, 0, WC_STATICW, WS_CHILD | WS_VISIBLE | SS_LEFT | SS_CENTERIMAGE, text(heading))),
      list_(create_child(parent, id, WC_LISTVIEWW, list_style, text(heading))) {
  ListView_SetExtendedListViewStyle(list_, list_extended_style);
  insert_columns();
}

void ListPane::insert_columns() {
  for (size_t index = 0; index < columns_.size(); ++index) {
    std::wstring title = text(columns_[index].title);
    LVCOLUMNW column{};
    column.mask = LVCF_TEXT | LVCF_FMT | LVCF_WIDTH;
    column.cx = MulDiv(columns_[index].width, dpi_, USER_DEFAULT_SCREEN_DPI);
    column.fmt = columns_[index].alignment;
    column.pszText = title.data();
    ListView_InsertColumn(list_, static_cast<int>(index), &column);
  }
}

void ListPane::use_columns(std::span<const ListColumn> columns) {
  while (ListView_DeleteColumn(list_, 0)) continue;
  columns_ = columns;
  insert_columns();
}

void ListPane::use_font(HFONT font, int dpi) {
  dpi_ = dpi;
  for (HWND window : {heading_, list_}) SendMessageW(window, WM_SETFONT, reinterpret_cast<WPARAM>(font), TRUE);
  for (size_t index = 0; index < columns_.size(); ++index)
    ListView_SetColumnWidth(list_, static_cast<int>(index),
                            MulDiv(columns_[index].width, dpi, USER_DEFAULT_SCREEN_DPI));
}

int ListPane::focused_row() const { return ListView_GetNextItem(list_, -1, LVNI_FOCUSED); }

void ListPane::show_rows(size_t count, int selected) {
  row_count_ = count;
  ListView_SetItemCountEx(list_, static_cast<int>(count), LVSICF_NOSCROLL);
  ListView_SetItemState(list_, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
  const int row = std::clamp(selected, 0, std::max(static_cast<int>(count) - 1, 0));
  if (count > 0) ListView_SetItemState(list_, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
  InvalidateRect(list_, nullptr, FALSE);
}

std::optional<COLORREF> ListPane::row_color(size_t) const { return std::nullopt; }

LRESULT ListPane::notify(NMHDR& notification) {
  switch (notification.code) {
    case LVN_GETDISPINFOW:
      fill_cell(reinterpret_cast<NMLVDISPINFOW&>(notification));
      return 0;
    case LVN_ODFINDITEMW:
      return find_row(reinterpret_cast<const NMLVFINDITEMW&>(notification));
    case NM_CUSTOMDRAW:
      return draw(reinterpret_cast<NMLVCUSTOMDRAW&>(notification));
    default:
      return 0;
  }
}

void ListPane::fill_cell(NMLVDISPINFOW& request) const {
  LVITEMW& item = request.item;
  if (!(item.mask & LVIF_TEXT) || item.cchTextMax <= 0 || static_cast<size_t>(item.iItem) >= row_count_) return;
  const std::wstring value = cell(static_cast<size_t>(item.iItem), static_cast<size_t>(item.iSubItem));
  lstrcpynW(item.pszText, value.c_str(), item.cchTextMax);
}

/// Typing the beginning of a text in one of the first two columns jumps to its row.
LRESULT ListPane::find_row(const NMLVFINDITEMW& request) const {
  if (!(request.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || row_count_ == 0) return -1;
  const std::wstring beginning = request.lvfi.psz;
  const size_t start = request.iStart < 0 ? 0 : static_cast<size_t>(request.iStart);
  for (size_t step = 0; step < row_count_; ++step) {
    const size_t row = (start + step) % row_count_;
    if (starts_with(cell(row, 0), beginning) || starts_with(cell(row, 1), beginning)) return static_cast<LRESULT>(row);
  }
  return -1;
}

LRESULT ListPane::draw(NMLVCUSTOMDRAW& request) const {
  switch (request.nmcd.dwDrawStage) {
    case CDDS_PREPAINT:
      return CDRF_NOTIFYITEMDRAW;
    case CDDS_ITEMPREPAINT:
      if (request.nmcd.dwItemSpec < row_count_)
        request.clrText = row_color(request.nmcd.dwItemSpec).value_or(request.clrText);
      return CDRF_DODEFAULT;
    default:
      return CDRF_DODEFAULT;
  }
}

}  // namespace workbench
