#include "CalendarFile.h"

#include <algorithm>
#include <array>
#include <map>

#include "Csv.h"
#include "Utf8.h"

namespace workbench::schedule {

namespace {

constexpr std::array<std::string_view, 7> keys{"name", "title", "covers", "from", "to", "weekend", "source"};
constexpr std::array<std::string_view, 7> weekday_names{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                        "Thursday", "Friday", "Saturday"};

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(" \t\r");
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(" \t\r") + 1 - begin);
}

/// Takes the text up to the separator off the front, and the separator.
std::string_view take_until(std::string_view& text, char separator) {
  const std::string_view taken = text.substr(0, text.find(separator));
  text.remove_prefix(std::min(taken.size() + 1, text.size()));
  return taken;
}

std::optional<WeekdaySet> try_parse_weekend(std::string_view text) {
  if (text == "none") return WeekdaySet{0};
  unsigned weekend = 0;
  // A separator behind the last name would leave an empty one.
  for (bool more = true; more;) {
    more = text.find(',') != std::string_view::npos;
    const auto* name = std::ranges::find(weekday_names, trimmed(take_until(text, ',')));
    if (name == weekday_names.end()) return std::nullopt;
    weekend |= 1U << static_cast<unsigned>(name - weekday_names.begin());
  }
  return weekend == every_weekday ? std::nullopt : std::optional(static_cast<WeekdaySet>(weekend));
}

std::string weekend_text(WeekdaySet weekend) {
  // Saturday first, as the weekend is usually said.
  std::string text;
  for (const std::size_t i : {6U, 0U, 1U, 2U, 3U, 4U, 5U}) {
    if ((weekend >> i & 1U) != 0) text += (text.empty() ? "" : ", ") + std::string(weekday_names[i]);
  }
  return text.empty() ? "none" : text;
}

std::string one_line(std::string text) {
  std::ranges::replace(text, '\r', ' ');
  std::ranges::replace(text, '\n', ' ');
  return text;
}

class CalendarReader {
 public:
  CalendarReader(std::string_view text, const Progress& progress) : rest_(text), progress_(progress) {}

  CalendarReading read() {
    while (rest_.starts_with('#') || rest_.starts_with('\r') || rest_.starts_with('\n')) read_key();
    check_keys();
    read_days();
    std::ranges::stable_sort(mistakes_, {}, &Mistake::line);
    if (!mistakes_.empty()) return {std::nullopt, std::move(mistakes_)};
    return {std::move(calendar_), {}};
  }

 private:
  struct Value {
    std::size_t line;
    std::string_view text;
  };

  void complain(std::size_t line, MistakeKind kind, std::vector<std::string> parameters = {}) {
    mistakes_.push_back({line, kind, std::move(parameters)});
  }

  void read_key() {
    const bool is_last = rest_.find('\n') == std::string_view::npos;
    std::string_view line = take_until(rest_, '\n');
    if (line.ends_with('\r')) line.remove_suffix(1);
    const std::size_t number = line_;
    if (!is_last) ++line_;
    if (line.empty()) return;
    std::string_view value = line.substr(1);
    const std::string_view key = trimmed(take_until(value, ':'));
    if (std::ranges::find(keys, key) == keys.end() || line.find(':') == std::string_view::npos) {
      complain(number, MistakeKind::unknown_key, {std::string(line)});
    } else if (!values_.try_emplace(key, Value{number, trimmed(value)}).second) {
      complain(number, MistakeKind::repeated_key, {std::string(key)});
    }
  }

  const Value* find(std::string_view key) const {
    const auto found = values_.find(key);
    return found == values_.end() ? nullptr : &found->second;
  }

  std::string text_of(std::string_view key) const {
    const Value* value = find(key);
    return value ? one_line(std::string(value->text)) : std::string();
  }

  std::optional<Day> day_of(std::string_view key) {
    const Value* value = find(key);
    if (!value) return std::nullopt;
    const std::optional<Day> day = try_parse_day(value->text);
    if (!day) complain(value->line, MistakeKind::day, {std::string(value->text)});
    return day;
  }

  void check_keys() {
    for (const std::string_view required : {"name", "from", "to"}) {
      if (!find(required)) complain(line_, MistakeKind::missing_key, {std::string(required)});
    }
    calendar_.name = text_of("name");
    calendar_.title = text_of("title");
    calendar_.covers = text_of("covers");
    calendar_.source = text_of("source");
    if (const Value* name = find("name"); name && !is_calendar_name(name->text))
      complain(name->line, MistakeKind::calendar_name, {calendar_.name});
    if (const Value* weekend = find("weekend")) {
      if (const std::optional<WeekdaySet> days = try_parse_weekend(weekend->text)) {
        calendar_.weekend = *days;
      } else {
        complain(weekend->line, MistakeKind::weekend, {std::string(weekend->text)});
      }
    }
    const std::optional<Day> from = day_of("from");
    const std::optional<Day> to = day_of("to");
    if (!from || !to) return;
    has_range_ = *from <= *to;
    if (!has_range_) complain(find("to")->line, MistakeKind::day_order_of_range, {to_text(*from), to_text(*to)});
    calendar_.from = *from;
    calendar_.to = *to;
  }

  void read_days() {
    CsvRecords table = parse_csv(rest_, ',', line_, progress_);
    std::ranges::move(table.mistakes, std::back_inserter(mistakes_));
    if (table.records.empty()) return complain(line_, MistakeKind::calendar_columns, {""});
    const CsvRecord& columns = table.records.front();
    const std::vector<std::string> with_reason{"date", "reason"};
    if (columns.fields != with_reason && columns.fields != std::vector<std::string>{"date"}) {
      std::string found;
      for (const std::string& column : columns.fields) found += (found.empty() ? "" : ",") + column;
      return complain(columns.line, MistakeKind::calendar_columns, {found});
    }
    for (std::size_t i = 1; i < table.records.size(); ++i) read_day(table.records[i], columns.fields.size());
  }

  void read_day(CsvRecord& record, std::size_t columns) {
    if (record.fields.size() != columns) {
      return complain(record.line, MistakeKind::field_count,
                      {std::to_string(columns), std::to_string(record.fields.size())});
    }
    const std::string& text = record.fields.front();
    const std::optional<Day> day = try_parse_day(text);
    if (!day) return complain(record.line, MistakeKind::day, {text});
    if (last_day_ && *day == *last_day_) return complain(record.line, MistakeKind::repeated_day, {text});
    if (last_day_ && *day < *last_day_)
      return complain(record.line, MistakeKind::descending_day, {to_text(*last_day_), text});
    last_day_ = day;
    if (contains(calendar_.weekend, *day)) return complain(record.line, MistakeKind::day_on_weekend, {text});
    if (has_range_ && (*day < calendar_.from || *day > calendar_.to)) {
      return complain(record.line, MistakeKind::day_outside, {to_text(calendar_.from), to_text(calendar_.to), text});
    }
    calendar_.closed.push_back({*day, columns == 2 ? std::move(record.fields.back()) : std::string()});
  }

  std::string_view rest_;
  const Progress& progress_;
  std::size_t line_ = 1;
  std::map<std::string_view, Value> values_;
  bool has_range_ = false;
  std::optional<Day> last_day_;
  Calendar calendar_;
  std::vector<Mistake> mistakes_;
};

}  // namespace

CalendarReading read_calendar(std::string_view bytes, const Progress& progress) {
  const std::string_view text = without_byte_order_mark(bytes);
  if (const std::optional<std::size_t> line = find_line_without_utf8(text))
    return {std::nullopt, {{*line, MistakeKind::not_utf8}}};
  return CalendarReader(text, progress).read();
}

std::string write_calendar(const Calendar& calendar) {
  std::string text;
  const auto key = [&](std::string_view name, const std::string& value) {
    if (!value.empty()) text.append("# ").append(name).append(": ").append(one_line(value)).append("\n");
  };
  key("name", calendar.name);
  key("title", calendar.title);
  key("covers", calendar.covers);
  key("from", to_text(calendar.from));
  key("to", to_text(calendar.to));
  key("weekend", weekend_text(calendar.weekend));
  key("source", calendar.source);
  const bool reasons = std::ranges::any_of(calendar.closed, [](const ClosedDay& day) { return !day.reason.empty(); });
  text += reasons ? "date,reason\n" : "date\n";
  for (const ClosedDay& day : calendar.closed) {
    std::vector<std::string> fields{to_text(day.day)};
    if (reasons) fields.push_back(day.reason);
    append_csv(text, fields, "\n");
  }
  return text;
}

}  // namespace workbench::schedule
