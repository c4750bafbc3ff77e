#pragma once

#include <windows.h>
#include <commctrl.h>

#include <optional>
#include <span>
#include <string>

namespace workbench {

/// One column of a list.
struct ListColumn {
  UINT title = 0;  ///< id of its text
  int width = 0;   ///< in pixels at 96 dpi
  int alignment = LVCFMT_LEFT;
};

/// A heading over a list of rows. The list asks for the text of a cell when it draws it, so a pane shows many rows as
/// fast as few. The windows belong to the parent, which destroys them.
class ListPane {
 public:
  ListPane(HWND parent, UINT id, UINT heading, std::span<const ListColumn> columns);
  ListPane(const ListPane&) = delete;
  ListPane& operator=(const ListPane&) = delete;
  virtual ~ListPane() = default;

  HWND heading() const noexcept { return heading_; }
  HWND list() const noexcept { return list_; }

  /// Sets the font, which must outlive its use here, and the column widths for this resolution.
  void use_font(HFONT font, int dpi);

  /// Handles a notification of the list and returns its result.
  LRESULT notify(NMHDR& notification);

  /// The row that has the focus; -1 when there is none.
  int focused_row() const;

 protected:
  /// Sets the list's row count and draws them anew. The row `selected`, or the nearest that there is,
  /// becomes the selected one.
  void show_rows(size_t count, int selected);

  virtual std::wstring cell(size_t row, size_t column) const = 0;
  /// The colour of a row's text if it is another than usual.
  virtual std::optional<COLORREF> row_color(size_t row) const;
  /// The colour of rows with which something is wrong.
  static constexpr COLORREF marked_row_color = RGB(192, 0, 0);

  /// The column at this index.
  const ListColumn& column_at(size_t index) const { return columns_[index]; }
  /// Replaces the columns.
  void use_columns(std::span<const ListColumn> columns);

 private:
  void insert_columns();
  void fill_cell(NMLVDISPINFOW& request) const;
  LRESULT find_row(const NMLVFINDITEMW& request) const;
  LRESULT draw(NMLVCUSTOMDRAW& request) const;

  std::span<const ListColumn> columns_;
  size_t row_count_ = 0;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;
  HWND heading_;
  HWND list_;
};

}  // namespace workbench
