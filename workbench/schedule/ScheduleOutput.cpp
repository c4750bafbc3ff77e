#include "ScheduleOutput.h"

#include <cstdint>
#include <map>

#include "ICalendar.h"
#include "TextTable.h"

namespace workbench::schedule {

namespace {

TextTable table_of(std::span<const ScheduleRow> rows, const Progress& progress) {
  TextTable table{{"rule", "setting", "contract", "specified", "expiration", "roll", "flags"}};
  for (const ScheduleRow& row : rows) {
    advance(progress, table.size(), rows.size());
    table.push_back({row.rule, row.setting, to_text(row.dates.contract), known_text(row.dates.specified),
                     known_text(row.dates.expiration), known_text(row.dates.roll), joined(flag_names(row.dates), ";")});
  }
  return table;
}

std::string json_day(const ContractDay& day) { return day.date ? '"' + to_text(*day.date) + '"' : "null"; }

/// 20260116
std::string basic_text(Day day) {
  std::string text = to_text(day);
  std::erase(text, '-');
  return text;
}

/// A hash that depends on the text alone, so that identifiers stay the same from export to export.
std::string stable_hash(std::string_view text) {
  std::uint64_t hash = 0xCBF29CE484222325U;  // FNV-1a
  for (const char unit : text) hash = (hash ^ static_cast<unsigned char>(unit)) * 0x100000001B3U;
  return std::to_string(hash);
}

class ICalendarWriter {
 public:
  ICalendarWriter(Day today, Language language) : today_(today), language_(language) {}

  std::string write(std::span<const ScheduleRow> rows, const Progress& progress) {
    line("BEGIN", "VCALENDAR");
    line("VERSION", "2.0");
    line("PRODID", "-//zdExpirationRules//workbench//EN");
    for (std::size_t i = 0; i < rows.size(); ++i) {
      advance(progress, i, rows.size());
      const ScheduleRow& row = rows[i];
      event(row, row.dates.expiration, "expiration", word("expiration", "到期"));
      event(row, row.dates.roll, "roll", word("roll", "换月"));
    }
    line("END", "VCALENDAR");
    return std::move(text_);
  }

 private:
  void line(std::string_view name, std::string_view value) { append_icalendar_line(text_, name, value); }

  const char* word(const char* english, const char* chinese) const {
    return language_ == Language::chinese ? chinese : english;
  }

  void event(const ScheduleRow& row, const ContractDay& day, const std::string& kind, const char* kind_word) {
    if (!day.date) return;
    const std::string contract = to_text(row.dates.contract);
    line("BEGIN", "VEVENT");
    const std::string subject_hash =
        stable_hash(stable_hash(row.rule) + '-' + stable_hash(row.setting) + '-' + stable_hash(row.calendar));
    const std::string identifier = kind + '-' + contract + '-' + subject_hash;
    // Settings may repeat another's name, rule and calendar.
    line("UID", identifier + '-' + std::to_string(++written_[identifier]) + "@expiration-rules");
    line("DTSTAMP", basic_text(today_) + "T000000Z");
    line("DTSTART;VALUE=DATE", basic_text(*day.date));
    line("DTEND;VALUE=DATE", basic_text(*day.date + std::chrono::days{1}));
    const std::string& subject = row.setting.empty() ? row.rule : row.setting;
    line("SUMMARY", icalendar_text(well_formed(subject) + ' ' + contract + ' ' + kind_word));
    const std::string flags = joined(flag_names(row.dates), "; ");
    line("DESCRIPTION", icalendar_text(well_formed(row.rule) + (flags.empty() ? "" : '\n' + flags)));
    line("STATUS", day.basis == Basis::estimate ? "TENTATIVE" : "CONFIRMED");
    line("TRANSP", "TRANSPARENT");
    line("END", "VEVENT");
  }

  Day today_;
  Language language_;
  std::map<std::string, int> written_;
  std::string text_;
};

}  // namespace

std::string schedule_csv(std::span<const ScheduleRow> rows, const Progress& progress) {
  return csv_text(table_of(rows, part_of(progress, 0, 50)), part_of(progress, 50, 100));
}

std::string schedule_table(std::span<const ScheduleRow> rows, const Progress& progress) {
  return aligned_text(table_of(rows, part_of(progress, 0, 40)), part_of(progress, 40, 100));
}

std::string schedule_json(std::span<const ScheduleRow> rows, const Progress& progress) {
  std::string text = "[";
  for (std::size_t i = 0; i < rows.size(); ++i) {
    advance(progress, i, rows.size());
    const ScheduleRow& row = rows[i];
    text += text.size() > 1 ? ",\n" : "\n";
    text += R"(  {"rule": )" + json_string(row.rule) + R"(, "setting": )" + json_string(row.setting) +
            R"(, "contract": )" + json_string(to_text(row.dates.contract)) + R"(, "specified": )" +
            json_day(row.dates.specified) + R"(, "expiration": )" + json_day(row.dates.expiration) + R"(, "roll": )" +
            json_day(row.dates.roll) + R"(, "flags": [)";
    std::vector<std::string> flags = flag_names(row.dates);
    for (std::string& flag : flags) flag = json_string(flag);
    text += joined(flags, ", ") + "]}";
  }
  return text + "\n]\n";
}

std::string schedule_icalendar(std::span<const ScheduleRow> rows, Day today, Language language,
                               const Progress& progress) {
  return ICalendarWriter(today, language).write(rows, progress);
}

}  // namespace workbench::schedule
