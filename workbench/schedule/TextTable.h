#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Progress.h"

namespace workbench::schedule {

/// A table of texts whose first row names the columns. Texts are UTF-8 that may also hold the three bytes of a lone
/// surrogate; where a form cannot express one, U+FFFD replaces it.
using TextTable = std::vector<std::vector<std::string>>;

/// The table as CSV; see `append_csv`.
std::string csv_text(const TextTable& table, const Progress& progress = {});

/// The table in columns of equal width for a screen with letters of equal width; Chinese letters take two columns.
std::string aligned_text(const TextTable& table, const Progress& progress = {});

/// The text in UTF-8, with U+FFFD for each byte sequence that is not.
std::string well_formed(std::string_view text);

/// The text as a JSON string with its quotation marks. Control characters and lone surrogates are escaped.
std::string json_string(std::string_view text);

/// The text with the characters escaped that have a meaning in HTML.
std::string html_text(std::string_view text);

}  // namespace workbench::schedule
