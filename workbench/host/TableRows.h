#pragma once

#include <cstddef>
#include <string>
#include <variant>
#include <vector>

#include "FieldIds.h"

namespace workbench {

/// The content of a table object: columns of numbers or of texts, all of one length, and the current row.
class TableRows {
 public:
  using Numbers = std::vector<long>;
  using Texts = std::vector<std::wstring>;

  /// Declares a column for this field; its rows hold 0 or an empty text. Returns false when the host knows no such
  /// field or the table has rows. A column that is there already stays.
  bool declare(long field);

  /// The index of the column of this field, valid as long as these rows; -1 when there is none.
  std::ptrdiff_t find(long field) const noexcept;

  /// The values of a declared column of that type, or null for another type.
  Numbers* numbers(std::ptrdiff_t index) noexcept { return std::get_if<Numbers>(&column(index).values); }
  Texts* texts(std::ptrdiff_t index) noexcept { return std::get_if<Texts>(&column(index).values); }

  /// Gives every column this many rows and makes the first one current.
  void resize(std::size_t count);

  /// Adds one row at the end. The current row stays.
  void append();

  std::size_t count() const noexcept { return count_; }

  /// The current row; `count()` once it is past the last.
  std::size_t current() const noexcept { return current_; }
  bool at_end() const noexcept { return current_ >= count_; }
  void move_to(std::size_t row) noexcept { current_ = row < count_ ? row : count_; }

 private:
  struct Column {
    long field;
    std::variant<Numbers, Texts> values;
  };

  Column& column(std::ptrdiff_t index) noexcept { return columns_[static_cast<std::size_t>(index)]; }
  void grow_columns(std::size_t count);

  std::vector<Column> columns_;
  std::size_t count_ = 0;
  std::size_t current_ = 0;
};

}  // namespace workbench
