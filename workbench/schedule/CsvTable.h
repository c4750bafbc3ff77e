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

/// Reads a file of values; see `read_csv`. Columns may come in any order. If a wanted one is missing or repeated,
/// that is a mistake and there are no rows; a row with another number of fields than the first line is a mistake and
/// left out.
CsvTable read_csv_table(std::string_view bytes, std::span<const std::string_view> columns,
                        const Progress& progress = {});

}  // namespace workbench::schedule
