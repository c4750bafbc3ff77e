#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Mistakes.h"
#include "Progress.h"

namespace workbench::schedule {

/// One record of a table of values, and the line on which it begins.
struct CsvRecord {
  std::size_t line = 0;
  std::vector<std::string> fields;
};

/// The records of a text, and the mistakes in its form. A record with a mistake is left out.
struct CsvRecords {
  std::vector<CsvRecord> records;
  std::vector<Mistake> mistakes;
};

/// Reads values that are separated by this character, in the form of RFC 4180: fields may be quoted, and then hold line
/// breaks and doubled quotation marks. Lines end with CR LF, LF or CR; empty lines do not count. `first_line` is the
/// number of the text's first line. `progress` counts bytes.
CsvRecords parse_csv(std::string_view text, char separator = ',', std::size_t first_line = 1,
                     const Progress& progress = {});

/// Reads a whole file: UTF-8 with or without byte order mark or UTF-16 with one, separated by tabs if its first line
/// holds one, otherwise by commas.
CsvRecords read_csv(std::string_view bytes, const Progress& progress = {});

/// Appends the fields as one line. A field is quoted if it needs it.
void append_csv(std::string& text, const std::vector<std::string>& fields, std::string_view line_end = "\r\n");

}  // namespace workbench::schedule
