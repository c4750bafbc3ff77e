#include "ICalendar.h"

#include <algorithm>
#include <map>
#include <optional>

#include "Utf8.h"

namespace workbench::schedule {

namespace {

using std::chrono::days;

constexpr std::size_t longest_line = 75;

std::string upper_case(std::string_view text) {
  std::string result(text);
  for (char& unit : result) {
    if (unit >= 'a' && unit <= 'z') unit = static_cast<char>(unit - 'a' + 'A');
  }
  return result;
}

/// A line with its continuations, and its parts. Names and parameters are in upper case.
struct ContentLine {
  std::size_t number = 0;
  std::string name;
  std::string parameters;
  std::string value;
};

/// Takes a line off the front, without its end.
std::string_view take_line(std::string_view& text) {
  std::string_view line = text.substr(0, text.find('\n'));
  text.remove_prefix(std::min(line.size() + 1, text.size()));
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

/// Splits NAME;PARAMETERS:VALUE. A colon within quotation marks does not end the parameters.
std::optional<ContentLine> try_split(const std::string& line, std::size_t number) {
  bool quoted = false;
  std::size_t colon = 0;
  for (; colon < line.size() && (quoted || line[colon] != ':'); ++colon) quoted ^= line[colon] == '"';
  const std::size_t name_end = std::min(line.find(';'), colon);
  if (colon == line.size() || name_end == 0) return std::nullopt;
  return ContentLine{number, upper_case(line.substr(0, name_end)), upper_case(line.substr(name_end, colon - name_end)),
                     line.substr(colon + 1)};
}

std::string unescaped(std::string_view text) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      result += text[i];
    } else {
      const char escaped = text[++i];
      result += escaped == 'n' || escaped == 'N' ? ' ' : escaped;
    }
  }
  return result;
}

/// A day in the form 20260116.
std::optional<Day> try_parse_basic_day(std::string_view text) {
  if (text.size() != 8) return std::nullopt;
  return try_parse_day(std::string(text.substr(0, 4)) + '-' + std::string(text.substr(4, 2)) + '-' +
                       std::string(text.substr(6)));
}

/// Whole days or weeks in the form P3D or P1W.
std::optional<days> try_parse_duration(std::string_view text) {
  if (text.size() < 3 || text.front() != 'P' || text.size() > 8) return std::nullopt;
  const std::optional<int> count = try_parse_digits(text.substr(1, text.size() - 2));
  if (!count || *count < 1 || (text.back() != 'D' && text.back() != 'W')) return std::nullopt;
  return days{text.back() == 'W' ? *count * 7 : *count};
}

class ICalendarReader {
 public:
  explicit ICalendarReader(const CalendarScope& scope) : scope_(scope) {}

  CalendarReading read(std::string_view text, const Progress& progress) {
    const std::size_t size = text.size();
    if (!is_calendar_name(scope_.name)) complain(1, MistakeKind::calendar_name, {scope_.name});
    if (scope_.to < scope_.from)
      complain(1, MistakeKind::day_order_of_range, {to_text(scope_.from), to_text(scope_.to)});
    while (!text.empty()) {
      advance(progress, size - text.size(), size);
      read_line(text);
    }
    if (!components_.empty() || !ended_)
      complain(std::max<std::size_t>(line_, 1), MistakeKind::icalendar_end,
               {components_.empty() ? "VCALENDAR" : components_.back()});
    if (!mistakes_.empty()) return {std::nullopt, std::move(mistakes_)};
    Calendar calendar{.name = scope_.name, .title = title_, .from = scope_.from, .to = scope_.to};
    for (auto& [day, reason] : closed_) calendar.closed.push_back({day, std::move(reason)});
    return {std::move(calendar), {}};
  }

 private:
  struct Event {
    std::optional<Day> start;
    std::optional<Day> end;
    std::optional<days> duration;
    std::string summary;
    bool cancelled = false;
    bool refused = false;
  };

  void complain(std::size_t line, MistakeKind kind, std::vector<std::string> parameters = {}) {
    mistakes_.push_back({line, kind, std::move(parameters)});
  }

  void refuse_event(const ContentLine& line, MistakeKind kind) {
    event_.refused = true;
    complain(line.number, kind, {line.name + line.parameters + ":" + line.value});
  }

  void read_line(std::string_view& text) {
    const std::size_t number = ++line_;
    std::string unfolded(take_line(text));
    for (; text.starts_with(' ') || text.starts_with('\t'); ++line_) unfolded += take_line(text).substr(1);
    if (unfolded.empty()) return;
    const std::optional<ContentLine> line = try_split(unfolded, number);
    if (!line || ended_ || (components_.empty() && (line->name != "BEGIN" || upper_case(line->value) != "VCALENDAR")))
      return complain(number, MistakeKind::icalendar_line, {unfolded});
    if (line->name == "BEGIN") {
      begin_component(*line);
    } else if (line->name == "END") {
      end_component(*line);
    } else if (components_.size() == 2 && components_.back() == "VEVENT") {
      read_property(*line);
    } else if (components_.size() == 1 && line->name == "X-WR-CALNAME") {
      title_ = unescaped(line->value);
    }
  }

  void begin_component(const ContentLine& line) {
    components_.push_back(upper_case(line.value));
    if (components_.size() == 2) event_ = {};
    has_event_ |= components_.size() == 2 && components_.back() == "VEVENT";
  }

  void end_component(const ContentLine& line) {
    if (components_.back() != upper_case(line.value))
      return complain(line.number, MistakeKind::icalendar_end, {components_.back()});
    if (components_.size() == 2 && components_.back() == "VEVENT") add_event(line);
    components_.pop_back();
    ended_ = components_.empty();
    if (ended_ && !has_event_) complain(line.number, MistakeKind::icalendar_no_event);
  }

  void read_property(const ContentLine& line) {
    if (line.name == "DTSTART" || line.name == "DTEND") {
      std::optional<Day>& day = line.name == "DTSTART" ? event_.start : event_.end;
      day = try_parse_basic_day(line.value);
      if (!day) refuse_event(line, MistakeKind::icalendar_day);
    } else if (line.name == "DURATION") {
      event_.duration = try_parse_duration(line.value);
      if (!event_.duration) refuse_event(line, MistakeKind::icalendar_day);
    } else if (line.name == "RRULE" || line.name == "RDATE") {
      refuse_event(line, MistakeKind::icalendar_repeats);
    } else if (line.name == "SUMMARY") {
      event_.summary = unescaped(line.value);
    } else if (line.name == "STATUS") {
      event_.cancelled = upper_case(line.value) == "CANCELLED";
    }
  }

  void add_event(const ContentLine& line) {
    if (event_.refused || event_.cancelled) return;
    if (!event_.start) return complain(line.number, MistakeKind::icalendar_no_start);
    const Day end = event_.end ? *event_.end : *event_.start + event_.duration.value_or(days{1});
    // Some programs give an event of one day its own day as the end.
    if (end < *event_.start) return complain(line.number, MistakeKind::icalendar_end_before_start);
    const Day last = std::max(end - days{1}, *event_.start);
    for (Day day = std::max(*event_.start, scope_.from); day <= std::min(last, scope_.to); day += days{1}) {
      if (!contains(saturday_and_sunday, day)) closed_.try_emplace(day, event_.summary);
    }
  }

  const CalendarScope& scope_;
  std::size_t line_ = 0;
  std::vector<std::string> components_;
  bool ended_ = false;
  bool has_event_ = false;
  Event event_;
  std::string title_;
  std::map<Day, std::string> closed_;
  std::vector<Mistake> mistakes_;
};

}  // namespace

CalendarReading read_icalendar(std::string_view bytes, const CalendarScope& scope, const Progress& progress) {
  const std::string_view text = without_byte_order_mark(bytes);
  if (const std::optional<std::size_t> line = find_line_without_utf8(text))
    return {std::nullopt, {{*line, MistakeKind::not_utf8}}};
  return ICalendarReader(scope).read(text, progress);
}

bool is_icalendar(std::string_view bytes) {
  constexpr std::string_view first_line = "BEGIN:VCALENDAR";
  std::string_view text = without_byte_order_mark(bytes);
  if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF")) text.remove_prefix(2);
  std::string beginning;
  // The zeros are those of UTF-16, which is recognised to be refused with the right message.
  for (const char unit : text) {
    if (unit == '\0' || (beginning.empty() && (unit == '\r' || unit == '\n'))) continue;
    if (beginning.size() == first_line.size()) break;
    beginning += unit;
  }
  return upper_case(beginning) == first_line;
}

void append_icalendar_line(std::string& text, std::string_view name, std::string_view value) {
  std::string line = std::string(name) + ':' + std::string(value);
  std::size_t room = longest_line;
  for (std::string_view rest = line; !rest.empty();) {
    std::size_t length = std::min(room, rest.size());
    // A character is not divided.
    while (length < rest.size() && length > 1 && (static_cast<unsigned char>(rest[length]) & 0xC0U) == 0x80U) --length;
    text.append(room == longest_line ? "" : " ").append(rest.substr(0, length)).append("\r\n");
    rest.remove_prefix(length);
    room = longest_line - 1;
  }
}

std::string icalendar_text(std::string_view text) {
  std::string result;
  for (const char unit : text) {
    if (unit == '\n') {
      result += "\\n";
    } else if (unit == '\\' || unit == ',' || unit == ';') {
      result.append("\\").append(1, unit);
    } else if (static_cast<unsigned char>(unit) >= 0x20 && unit != 0x7F) {
      result += unit;
    }
  }
  return result;
}

}  // namespace workbench::schedule
