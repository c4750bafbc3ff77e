#include "CsvTable.h"

#include <algorithm>

namespace workbench::schedule {

namespace {

/// Where each wanted column is in the first line. Missing and repeated ones are mistakes.
std::vector<std::size_t> locate(std::span<const std::string_view> columns, const CsvRecord& names, CsvTable& table) {
  std::vector<std::size_t> positions;
  for (const std::string_view column : columns) {
    const auto count = std::ranges::count(names.fields, column);
    const auto found = std::ranges::find(names.fields, column);
    if (count == 0) table.mistakes.push_back({names.line, MistakeKind::missing_column, {std::string(column)}});
    if (count > 1) table.mistakes.push_back({names.line, MistakeKind::repeated_column, {std::string(column)}});
    positions.push_back(static_cast<std::size_t>(found - names.fields.begin()));
  }
  for (const std::string& name : names.fields) {
    if (std::ranges::find(columns, name) == columns.end()) table.ignored_columns.push_back(name);
  }
  return positions;
}

}  // namespace

CsvTable read_csv_table(std::string_view bytes, std::span<const std::string_view> columns, const Progress& progress) {
  CsvRecords read = read_csv(bytes, progress);
  CsvTable table{{}, std::move(read.mistakes), {}};
  const std::size_t broken = table.mistakes.size();
  if (read.records.empty()) read.records.push_back({1, {}});
  const CsvRecord& names = read.records.front();
  const std::vector<std::size_t> positions = locate(columns, names, table);
  if (table.mistakes.size() == broken) {
    for (std::size_t i = 1; i < read.records.size(); ++i) {
      CsvRecord& record = read.records[i];
      if (record.fields.size() != names.fields.size()) {
        table.mistakes.push_back({record.line,
                                  MistakeKind::field_count,
                                  {std::to_string(names.fields.size()), std::to_string(record.fields.size())}});
        continue;
      }
      CsvRecord row{record.line, {}};
      for (const std::size_t position : positions) row.fields.push_back(record.fields[position]);
      table.rows.push_back(std::move(row));
    }
  }
  std::ranges::stable_sort(table.mistakes, {}, &Mistake::line);
  return table;
}

}  // namespace workbench::schedule
