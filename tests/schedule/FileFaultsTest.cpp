// Every kind of file that is read, cut at every length and damaged at every byte: it is accepted or refused with a
// line.
#include <algorithm>
#include <functional>

#include "CalendarFile.h"
#include "DateList.h"
#include "Depth.h"
#include "ICalendar.h"
#include "RandomCases.h"
#include "RuleFiles.h"
#include "ScheduleTest.h"

namespace workbench::schedule {

namespace {

struct FileKind {
  const char* name;
  std::string good;
  /// What the reader says. What it accepts must come back when it is written.
  std::function<std::vector<Mistake>(const std::string& bytes)> read;
  /// Whether the reader refuses a file that was cut at any length; otherwise it refuses one whose last line has too few
  /// fields.
  bool has_end = false;
  char separator = ',';
};

void PrintTo(const FileKind& kind, std::ostream* stream) { *stream << kind.name; }

std::string marked_utf16(const std::string& ascii, bool big_endian) {
  return (big_endian ? "\xFE\xFF" : "\xFF\xFE") + utf16(ascii, big_endian);
}

template <class Item>
std::vector<Item> items_of(const std::optional<std::vector<Lined<Item>>>& lined) {
  std::vector<Item> items;
  if (!lined) return items;
  for (const Lined<Item>& each : *lined) items.push_back(each.item);
  return items;
}

std::vector<Mistake> reread(const RuleFile& file) {
  if (!file.mistakes.empty()) return file.mistakes;
  const std::vector<NamedRule> rules = items_of(file.rules);
  const std::vector<NamedSetting> settings = items_of(file.settings);
  const RuleFile again = read_rules_json(write_rules_json(rules, settings));
  EXPECT_EQ(items_of(again.rules), rules);
  EXPECT_EQ(items_of(again.settings), settings);
  return again.mistakes;
}

std::vector<Mistake> reread(const CalendarReading& reading) {
  EXPECT_EQ(reading.calendar.has_value(), reading.mistakes.empty());
  if (!reading.calendar) return reading.mistakes;
  // Spaces at the ends of texts are not kept.
  const CalendarReading again = read_calendar(write_calendar(*reading.calendar));
  EXPECT_TRUE(again.calendar && again.calendar->closed.size() == reading.calendar->closed.size());
  return again.mistakes;
}

const std::string rules = rule_columns + "\r\nCSI 300,0,0,1,1,1,3,5,1,1\r\n\"a \"\"b\"\"\",3,0,0,25,0,1,1,1,0\r\n";
const std::string settings = setting_columns + "\nIF,CSI 300,china-futures,HMUZ,roll\n\"CL\",,,,expiration\n";

std::string separated_by_tabs(std::string text) {
  std::ranges::replace(text, ',', '\t');
  return text;
}

std::string json() {
  const std::vector<NamedRule> some_rules{{"CSI 300", on_weekday(3, 5)}, {"a\"\\\xED\xA0\x80", on_day(31)}};
  const std::vector<NamedSetting> some_settings{{"IF", "CSI 300", "china-futures", "HMUZ", true}, {"CL"}};
  return write_rules_json(some_rules, some_settings);
}

std::vector<Mistake> read_events(const std::string& bytes) {
  return reread(read_icalendar(bytes, {"holidays", day("2026-01-01"), day("2026-12-31")}));
}

std::vector<FileKind> file_kinds() {
  const auto rules_csv = [](const std::string& bytes) { return reread(read_rules_csv(bytes)); };
  const auto settings_csv = [](const std::string& bytes) { return reread(read_settings_csv(bytes)); };
  const auto records_json = [](const std::string& bytes) { return reread(read_rules_json(bytes)); };
  return {
      {"rules", rules, rules_csv},
      {"rules_separated_by_tabs", separated_by_tabs(rules), rules_csv, false, '\t'},
      {"rules_in_utf16", marked_utf16(rules, false), rules_csv},
      {"settings", settings, settings_csv},
      {"settings_separated_by_tabs", separated_by_tabs(settings), settings_csv, false, '\t'},
      {"json", json(), records_json, true},
      {"json_in_utf16", marked_utf16(json(), false), records_json, true},
      {"json_in_utf16_big_endian", marked_utf16(json(), true), records_json, true},
      {"dates", "contract,date\n2026-02,2026-02-20\nCLF26,2025-12-19\n",
       [](const std::string& bytes) { return read_date_list(bytes).mistakes; }},
      {"dates_of_rules", "rule,contract,date\r\nCSI 300,IF2601,2026-01-16\r\n\"a \"\"b\"\"\",202602,2025-12-19\r\n",
       [](const std::string& bytes) { return read_rule_date_list(bytes).mistakes; }},
      {"calendar",
       "# name: test\n# title: A test\n# from: 2026-01-01\n# to: 2026-12-31\n# weekend: Saturday, Sunday\n"
       "date,reason\n2026-01-01,New Year\n2026-05-01,\"Labour and \"\"more\"\"\"\n",
       [](const std::string& bytes) { return reread(read_calendar(bytes)); }},
      {"events",
       "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nX-WR-CALNAME:Holidays\r\nBEGIN:VEVENT\r\nDTSTART;VALUE=DATE:20260501\r\n"
       "DTEND;VALUE=DATE:20260506\r\nSUMM\r\n ARY:Labour\\, day\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n",
       &read_events, true},
  };
}

/// Each mistake names a line of the file.
void expect_lines(const std::vector<Mistake>& mistakes, const std::string& bytes) {
  const auto lines =
      static_cast<std::size_t>(std::ranges::count_if(bytes, [](char unit) { return unit == '\n' || unit == '\r'; }));
  for (const Mistake& mistake : mistakes) {
    ASSERT_GE(mistake.line, 1U) << describe(mistake);
    ASSERT_LE(mistake.line, lines + 1) << describe(mistake);
  }
}

class FileFaults : public testing::TestWithParam<FileKind> {};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Kinds, FileFaults, testing::ValuesIn(file_kinds()),
                         [](const auto& kind) { return std::string(kind.param.name); });

TEST_P(FileFaults, WholeFileIsAccepted) {
  const std::vector<Mistake> mistakes = GetParam().read(GetParam().good);
  EXPECT_TRUE(mistakes.empty()) << describe("f", mistakes.front());
}

TEST_P(FileFaults, TruncatedFileIsRefusedWithALine) {
  const auto& [name, good, read, has_end, separator] = GetParam();
  const bool is_utf16 = good.starts_with("\xFF\xFE") || good.starts_with("\xFE\xFF");
  const std::size_t bytes_of_a_unit = is_utf16 ? 2 : 1;
  const std::size_t units_of_a_line_end = good.find('\r') == std::string::npos ? 1 : 2;
  const std::size_t line_end = bytes_of_a_unit * units_of_a_line_end;
  const auto fields = std::count(good.begin(), good.end(), separator) / std::count(good.begin(), good.end(), '\n');
  for (std::size_t length = 0; length < good.size(); ++length) {
    const std::string cut = good.substr(0, length);
    const std::vector<Mistake> mistakes = read(cut);
    ASSERT_NO_FATAL_FAILURE(expect_lines(mistakes, cut)) << length;
    const std::string last_line = cut.substr(cut.find_last_of('\n') + 1);
    const bool lacks_fields =
        !last_line.empty() && last_line != "\r" && !is_utf16 && std::ranges::count(last_line, separator) < fields;
    const bool is_cut_utf16 = is_utf16 && length % 2 == 1;
    if (is_cut_utf16 || (has_end ? length + line_end < good.size() : lacks_fields)) {
      ASSERT_FALSE(mistakes.empty()) << length;
    }
  }
}

TEST_P(FileFaults, FileDamagedAtAnyByteIsRefusedWithALineOrAccepted) {
  const std::string& good = GetParam().good;
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const char byte : {'\0', '\n', '\r', '"', ',', '0', '\x7F', '\x80', '\xFF', static_cast<char>(good[at] ^ 1)}) {
      std::string damaged = good;
      damaged[at] = byte;
      ASSERT_NO_FATAL_FAILURE(expect_lines(GetParam().read(damaged), damaged)) << at << ' ' << int(byte);
    }
  }
}

TEST_P(FileFaults, FileDamagedAtSomeBytesIsRefusedWithALineOrAccepted) {
  test_support::RandomCases random;
  for (int number = 0; number < test_support::repetitions(50000, 1000); ++number) {
    std::string damaged = GetParam().good;
    random.damage(damaged, 3);
    ASSERT_NO_FATAL_FAILURE(expect_lines(GetParam().read(damaged), damaged)) << random.trace(number);
  }
}

}  // namespace workbench::schedule
