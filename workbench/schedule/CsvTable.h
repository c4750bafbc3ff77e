#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Csv.h"

namespace workbench::schedule {

/// A file of records whose columns are found by their names.
struct CsvTable {
  std::vector<CsvRecord> rows;  ///< with the wanted columns alone, in the wanted order
  std::vector<Mistake> mistakes;
  std::vector<std::string> ignored_columns;  ///< what the first line names besides
};

/// Reads a file of values; see `read_csv`. Every wanted column is required, in any order. A row with another number of
/// fields than the first line is a mistake and left out.
CsvTable read_csv_table(std::string_view bytes, std::span<const std::string_view> columns);

}  // namespace workbench::schedule
