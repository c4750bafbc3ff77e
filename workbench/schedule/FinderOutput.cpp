#include "FinderOutput.h"

#include "ScheduleRow.h"
#include "TextTable.h"

namespace workbench::schedule {

namespace {

std::vector<std::string> texts_of(const std::vector<Month>& months) {
  std::vector<std::string> texts;
  texts.reserve(months.size());
  for (const Month month : months) texts.push_back(to_text(month));
  return texts;
}

TextTable table_of(const FoundRules& found, const Progress& progress) {
  TextTable table{{"rank", "matched", "of"}};
  for (const RuleField& field : rule_fields) table.front().emplace_back(field.name);
  table.front().emplace_back("missed");
  for (const FoundRule& rule : found.rules) {
    advance(progress, table.size(), found.rules.size());
    std::vector<std::string> row{std::to_string(table.size()), std::to_string(rule.matched),
                                 std::to_string(found.counted)};
    for (const RuleField& field : rule_fields) row.push_back(std::to_string(rule.rule.*field.value));
    row.push_back(joined(texts_of(rule.missed), ";"));
    table.push_back(std::move(row));
  }
  return table;
}

std::string json_array(const std::vector<std::string>& elements) {
  return elements.empty() ? "[]" : '[' + joined(elements, ", ") + ']';
}

std::string json_dates(const std::vector<KnownDate>& dates) {
  std::vector<std::string> elements;
  elements.reserve(dates.size());
  for (const KnownDate& known : dates) {
    elements.push_back(R"({"contract": )" + json_string(to_text(known.contract)) + R"(, "date": )" +
                       json_string(to_text(known.date)) + '}');
  }
  return json_array(elements);
}

std::string json_rule(const FoundRules& found, std::size_t index) {
  const FoundRule& rule = found.rules[index];
  std::string text = "{\"rank\": " + std::to_string(index + 1) + ", \"matched\": " + std::to_string(rule.matched) +
                     ", \"of\": " + std::to_string(found.counted);
  for (const RuleField& field : rule_fields)
    text += std::string(", \"") + field.name + "\": " + std::to_string(rule.rule.*field.value);
  std::vector<std::string> missed = texts_of(rule.missed);
  for (std::string& contract : missed) contract = json_string(contract);
  return text + ", \"missed\": " + json_array(missed) + '}';
}

}  // namespace

std::string check_csv(std::span<const CheckRow> rows, const Progress& progress) {
  TextTable table{{"rule", "contract", "listed", "found", "days", "explained_by"}};
  for (const CheckRow& row : rows) {
    advance(progress, table.size(), 2 * rows.size());
    const DateCheck& check = row.check;
    std::vector<std::string> explanations;
    for (const Day day : check.explained_by) explanations.push_back(to_text(day));
    table.push_back({row.rule, to_text(check.listed.contract), to_text(check.listed.date), known_text(check.found),
                     check.days ? std::to_string(*check.days) : std::string(), joined(explanations, ";")});
  }
  return csv_text(table, part_of(progress, 50, 100));
}

std::string found_csv(const FoundRules& found, const Progress& progress) {
  return csv_text(table_of(found, part_of(progress, 0, 50)), part_of(progress, 50, 100));
}

std::string found_table(const FoundRules& found, const Progress& progress) {
  return aligned_text(table_of(found, part_of(progress, 0, 50)), part_of(progress, 50, 100));
}

std::string found_json(const FoundRules& found, const Progress& progress) {
  std::string text = "{\"counted\": " + std::to_string(found.counted) +
                     ", \"agreeing\": " + std::to_string(found.agreeing) + ", \"closed\": " + json_dates(found.closed) +
                     ", \"beyond_calendar\": " + json_dates(found.beyond_calendar) + ", \"rules\": [";
  for (std::size_t i = 0; i < found.rules.size(); ++i) {
    advance(progress, i, found.rules.size());
    text += (i == 0 ? "\n  " : ",\n  ") + json_rule(found, i);
  }
  return text + "]}\n";
}

}  // namespace workbench::schedule
