#include "DateList.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "Ascii.h"
#include "CsvTable.h"

namespace workbench::schedule {

namespace {

std::optional<Month> month_of(std::string_view year, std::string_view month) {
  const std::string full_year = (year.size() == 2 ? "20" : "") + std::string(year);
  return try_parse_month(full_year + '-' + std::string(month));
}

/// The digits at the end of the text.
std::string_view trailing_digits(std::string_view text) {
  std::size_t begin = text.size();
  while (begin > 0 && is_ascii_digit(text[begin - 1])) --begin;
  return text.substr(begin);
}

/// Whether an exchange names a product like this: letters and digits, at least one letter.
bool is_product(std::string_view text) {
  bool letter = false;
  for (const char unit : text) {
    if (!is_ascii_letter(unit) && !is_ascii_digit(unit)) return false;
    letter |= is_ascii_letter(unit);
  }
  return letter;
}

DateList read_list(std::string_view bytes, bool with_rule, const Progress& progress) {
  constexpr std::array<std::string_view, 3> columns{"rule", "contract", "date"};
  const CsvTable table = read_csv_table(bytes, std::span(columns).subspan(with_rule ? 0 : 1), progress);
  DateList list{{}, table.mistakes, table.ignored_columns};
  std::set<std::pair<std::string, std::string>> seen;
  for (const CsvRecord& row : table.rows) {
    const std::string& contract_text = row.fields[row.fields.size() - 2];
    const std::string& day_text = row.fields.back();
    const std::optional<Month> contract = try_parse_contract(contract_text);
    const std::optional<Day> day = try_parse_day(day_text);
    const std::string rule = with_rule ? row.fields.front() : std::string();
    if (with_rule && rule.empty()) list.mistakes.push_back({row.line, MistakeKind::no_rule_name});
    if (!contract) list.mistakes.push_back({row.line, MistakeKind::contract, {contract_text}});
    if (!day) list.mistakes.push_back({row.line, MistakeKind::day, {day_text}});
    if (!contract || !day || (with_rule && rule.empty())) continue;
    if (!seen.emplace(rule, to_text(*contract)).second) {
      list.mistakes.push_back({row.line, MistakeKind::repeated_contract, {to_text(*contract)}});
      continue;
    }
    list.dates.push_back({row.line, rule, {*contract, *day}});
  }
  std::ranges::stable_sort(list.mistakes, {}, &Mistake::line);
  return list;
}

}  // namespace

std::optional<Month> try_parse_contract(std::string_view text) {
  const std::string_view digits = trailing_digits(text);
  const std::string_view product = text.substr(0, text.size() - digits.size());
  if (product.empty() && digits.size() == 6) return month_of(digits.substr(0, 4), digits.substr(4));
  if (product.empty() || is_product(product)) {
    const std::size_t month =
        product.empty() ? std::string_view::npos : month_letters.find(to_ascii_upper(product.back()));
    const bool has_letter = month != std::string_view::npos;
    // CLZ2010 may be December 2010 or October 2020. Products with the month in digits, as in IF2010, have two letters.
    if (digits.size() == 4 && has_letter && product.size() > 2) return std::nullopt;
    if (digits.size() == 4) return month_of(digits.substr(0, 2), digits.substr(2));
    if (product.size() < 2 || digits.size() != 2 || !has_letter) return std::nullopt;
    const std::string number = std::to_string(month + 1);
    return month_of(digits, number.size() == 1 ? "0" + number : number);
  }
  return try_parse_month(text);
}

bool is_delivery_month(Month contract, std::string_view letters) {
  const char letter = month_letters[static_cast<unsigned>(contract.month()) - 1];
  return letters.empty() || letters.find(letter) != std::string_view::npos;
}

DateList read_date_list(std::string_view bytes, const Progress& progress) { return read_list(bytes, false, progress); }

DateList read_rule_date_list(std::string_view bytes, const Progress& progress) {
  return read_list(bytes, true, progress);
}

}  // namespace workbench::schedule
