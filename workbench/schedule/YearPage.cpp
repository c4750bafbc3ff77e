#include "YearPage.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

#include "TextTable.h"

namespace workbench::schedule {

namespace {

using std::chrono::days;

struct Words {
  const char* language;
  const char* title;
  std::array<const char*, 12> months;
  std::array<const char*, 7> weekdays;
  std::array<const char*, 7> columns;
  const char* expiration;
  const char* roll;
  const char* closed;
  const char* weekend;
  const char* estimate;
};

constexpr Words english{"en",
                        "Expirations and rolls",
                        {"January", "February", "March", "April", "May", "June", "July", "August", "September",
                         "October", "November", "December"},
                        {"Mo", "Tu", "We", "Th", "Fr", "Sa", "Su"},
                        {"rule", "setting", "contract", "specified", "expiration", "roll", "flags"},
                        "expiration",
                        "roll",
                        "closed",
                        "weekend",
                        "estimate"};

constexpr Words chinese{
    "zh-CN",
    "到期日与换月日",
    {"一月", "二月", "三月", "四月", "五月", "六月", "七月", "八月", "九月", "十月", "十一月", "十二月"},
    {"一", "二", "三", "四", "五", "六", "日"},
    {"规则", "设置", "合约", "指定日", "到期日", "换月日", "标记"},
    "到期",
    "换月",
    "休市",
    "周末",
    "估计"};

// The marks differ in shape too, for printers without colours.
constexpr const char* expiration_mark = "●";
constexpr const char* roll_mark = "▲";
constexpr const char* estimate_mark = "?";

constexpr const char* style =
    "@page{size:A4 landscape;margin:8mm}"
    "body{font:9pt/1.2 sans-serif;margin:1em;color:#111;background:#fff}"
    "h1{font-size:14pt;margin:0 0 .3em}p{margin:.3em 0}"
    ".year{display:grid;grid-template-columns:repeat(4,minmax(0,1fr));gap:.6em}"
    ".month{border:1px solid #999;padding:.3em;break-inside:avoid}"
    ".month h2{font-size:10pt;margin:0;text-align:center}"
    ".month table{width:100%;border-collapse:collapse;table-layout:fixed;text-align:center}"
    ".month ul{margin:.2em 0 0;padding:0;list-style:none;font-size:7pt}"
    ".closed{color:#777;text-decoration:line-through}"
    ".expiration{font-weight:bold;color:#a00;outline:2px solid #a00}"
    ".roll{font-weight:bold;color:#03c;background:#dde8ff}"
    ".list{border-collapse:collapse;margin-top:1em;font-size:8pt;width:100%}"
    ".list td,.list th{border-bottom:1px solid #bbb;padding:0 .5em 0 0;text-align:left}"
    ".estimate{font-style:italic}"
    "@media print{body{margin:0}.list{margin:0}"
    ".lists{break-before:page;display:grid;gap:0 4mm;align-items:start}"
    // Text that does not fit into a narrow line is cut; the table on the other page and the screen show all of it.
    ".lists2,.lists3,.lists4{white-space:nowrap}"
    ".lists3 .list,.lists4 .list{table-layout:fixed}"
    ".list td,.list th,.month li{overflow:hidden;text-overflow:ellipsis}.month li{white-space:nowrap}"
    ".lists2{grid-template-columns:repeat(2,minmax(0,1fr))}"
    ".lists3{grid-template-columns:repeat(3,minmax(0,1fr))}.lists3 .list{font-size:5.6pt;line-height:1.1}"
    ".lists4{grid-template-columns:repeat(4,minmax(0,1fr))}.lists4 .list{font-size:4.2pt;line-height:1.1}"
    ".lists3 th:nth-child(3),.lists4 th:nth-child(3){width:12%}.lists3 th:nth-child(7),.lists4 "
    "th:nth-child(7){width:10%}"
    ".lists3 th:nth-child(n+4):nth-child(-n+6),.lists4 th:nth-child(n+4):nth-child(-n+6){width:14.5%}"
    ".events2 ul{columns:2;column-gap:1mm;font-size:5.4pt;line-height:1.1}"
    ".events3 ul{columns:3;column-gap:1mm;font-size:4.2pt;line-height:1.1}"
    ".events4 ul{columns:4;column-gap:1mm;font-size:3.4pt;line-height:1.1}}";

/// How many columns a page needs for so many lines, of which these numbers fit in 1, 2 and 3 columns.
std::size_t columns_for(std::size_t lines, const std::array<std::size_t, 3>& most_lines) {
  return 1 + static_cast<std::size_t>(std::ranges::lower_bound(most_lines, lines) - most_lines.begin());
}

constexpr std::array<std::size_t, 3> most_rows{50, 100, 210};
constexpr std::array<std::size_t, 3> most_events{7, 20, 39};

/// What happens on a day: a contract of a rule expires, or rolls, or both.
struct Event {
  Day day{};
  std::string rule{};
  std::string contract{};
  bool is_expiration = false;
  bool is_roll = false;
  bool is_estimate = false;

  bool operator<(const Event& other) const {
    const auto order = [](const Event& event) {
      return std::tie(event.day, event.rule, event.contract, event.is_expiration, event.is_roll, event.is_estimate);
    };
    return order(*this) < order(other);
  }
};

class YearPage {
 public:
  YearPage(std::span<const ScheduleRow> rows, std::chrono::year year, const TradingDays* calendar, const Words& words,
           const Progress& progress)
      : rows_(rows), year_(year), calendar_(calendar), words_(words), progress_(progress) {
    for (std::size_t i = 0; i < rows.size(); ++i) {
      advance(progress_, i, 2 * rows.size());
      const ContractDates& dates = rows[i].dates;
      const bool is_one_event = dates.roll == dates.expiration;
      add_event(rows[i], dates.expiration, true, is_one_event);
      if (!is_one_event) add_event(rows[i], dates.roll, false, true);
    }
  }

  std::string write() {
    const std::string title = std::to_string(static_cast<int>(year_)) + ' ' + words_.title;
    text_ = std::string("<!DOCTYPE html>\n<html lang=\"") + words_.language +
            "\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + title + "</title>\n<style>" + style +
            "</style>\n</head>\n<body>\n<h1>" + title + "</h1>\n";
    text_ += std::string("<p>") + expiration_mark + ' ' + words_.expiration + " &nbsp; " + roll_mark + ' ' +
             words_.roll + " &nbsp; <span class=\"closed\">1</span> " + (calendar_ ? words_.closed : words_.weekend) +
             " &nbsp; " + estimate_mark + ' ' + words_.estimate + "</p>\n<div class=\"year events" +
             std::to_string(columns_for(most_events_of_a_month(), most_events)) + "\">\n";
    for (unsigned month = 1; month <= 12; ++month) write_month(year_ / std::chrono::month{month});
    text_ += "</div>\n";
    write_tables();
    text_ += "</body>\n</html>\n";
    return std::move(text_);
  }

 private:
  void add_event(const ScheduleRow& row, const ContractDay& day, bool is_expiration, bool is_roll) {
    if (!day.date) return;
    events_[{*day.date, row.rule, to_text(row.dates.contract), is_expiration, is_roll, day.basis == Basis::estimate}]
        .insert(row.setting);
  }

  /// Calls `use` with each event from `first` to `last`.
  template <class Use>
  void for_each_event(Day first, Day last, const Use& use) const {
    const auto end = events_.lower_bound({.day = last + days{1}});
    for (auto event = events_.lower_bound({.day = first}); event != end; ++event) use(event->first, event->second);
  }

  std::size_t most_events_of_a_month() const {
    std::size_t most = 0;
    for (unsigned month = 1; month <= 12; ++month) {
      const Month of_year = year_ / std::chrono::month{month};
      std::size_t count = 0;
      for_each_event(Day{of_year / 1}, Day{of_year / std::chrono::last}, [&](const auto&, const auto&) { ++count; });
      most = std::max(most, count);
    }
    return most;
  }

  bool is_closed(Day day) const {
    if (!calendar_) return contains(saturday_and_sunday, day);
    return calendar_->is_weekend(day) || (calendar_->covers(day) && !calendar_->is_open(day));
  }

  void write_month(Month month) {
    const Day first{month / 1};
    const Day last{month / std::chrono::last};
    text_ += std::string("<section class=\"month\"><h2>") + words_.months.at(static_cast<unsigned>(month.month()) - 1) +
             "</h2><table><tr>";
    for (const char* weekday : words_.weekdays) text_ += std::string("<th>") + weekday + "</th>";
    text_ += "</tr>\n";
    // Weeks begin on Monday.
    const Day monday = first - days{(std::chrono::weekday{first}.c_encoding() + 6) % 7};
    for (Day week = monday; week <= last; week += days{7}) {
      text_ += "<tr>";
      for (Day day = week; day < week + days{7}; day += days{1}) {
        if (day < first || day > last) {
          text_ += "<td></td>";
        } else {
          write_day(day);
        }
      }
      text_ += "</tr>\n";
    }
    text_ += "</table>";
    write_events(first, last);
    text_ += "</section>\n";
  }

  void write_day(Day day) {
    bool expiration = false;
    bool roll = false;
    for_each_event(day, day, [&](const Event& event, const auto&) {
      expiration |= event.is_expiration;
      roll |= event.is_roll;
    });
    std::string classes;
    if (is_closed(day)) classes += " closed";
    if (expiration) classes += " expiration";
    if (roll) classes += " roll";
    const unsigned number = static_cast<unsigned>(std::chrono::year_month_day{day}.day());
    text_ += (classes.empty() ? "<td>" : "<td class=\"" + classes.substr(1) + "\">") + std::to_string(number) +
             (expiration ? expiration_mark : "") + (roll ? roll_mark : "") + "</td>";
  }

  void write_events(Day first, Day last) {
    std::string lines;
    for_each_event(first, last, [&](const Event& event, const std::set<std::string>& settings) {
      lines += "<li>" + std::to_string(static_cast<unsigned>(std::chrono::year_month_day{event.day}.day())) + ' ' +
               (event.is_expiration ? expiration_mark : "") + (event.is_roll ? roll_mark : "") +
               (event.is_estimate ? estimate_mark : "") + ' ' + html_text(event.rule + in_brackets(settings)) + ' ' +
               event.contract + "</li>";
    });
    if (!lines.empty()) text_ += "<ul>" + lines + "</ul>";
  }

  static std::string in_brackets(const std::set<std::string>& settings) {
    std::string names;
    for (const std::string& name : settings) names += (names.empty() ? "" : ", ") + name;
    return names.empty() ? names : " (" + names + ')';
  }

  /// The rows in as many tables side by side as the printed page needs.
  void write_tables() {
    const std::size_t columns = columns_for(rows_.size(), most_rows);
    const std::size_t rows_of_a_table = std::max<std::size_t>((rows_.size() + columns - 1) / columns, 1);
    text_ += "<div class=\"lists lists" + std::to_string(columns) + "\">\n";
    for (std::size_t first = 0; first == 0 || first < rows_.size(); first += rows_of_a_table) {
      text_ += "<table class=\"list\"><thead><tr>";
      for (const char* column : words_.columns) text_ += std::string("<th>") + column + "</th>";
      text_ += "</tr></thead><tbody>\n";
      for (std::size_t i = first; i < std::min(first + rows_of_a_table, rows_.size()); ++i) {
        advance(progress_, rows_.size() + i, 2 * rows_.size());
        write_row(rows_[i]);
      }
      text_ += "</tbody></table>\n";
    }
    text_ += "</div>\n";
  }

  void write_row(const ScheduleRow& row) {
    text_ += "<tr><td>" + html_text(row.rule) + "</td><td>" + html_text(row.setting) + "</td><td>" +
             to_text(row.dates.contract) + "</td>";
    for (const ContractDay& day : {row.dates.specified, row.dates.expiration, row.dates.roll}) {
      const bool estimate = day.basis == Basis::estimate;
      text_ +=
          (estimate ? "<td class=\"estimate\">" : "<td>") + known_text(day) + (estimate ? estimate_mark : "") + "</td>";
    }
    text_ += "<td>" + joined(flag_names(row.dates), "; ") + "</td></tr>\n";
  }

  std::span<const ScheduleRow> rows_;
  std::chrono::year year_;
  const TradingDays* calendar_;
  const Words& words_;
  const Progress& progress_;
  std::map<Event, std::set<std::string>> events_;  ///< with the settings
  std::string text_;
};

}  // namespace

std::string year_page(std::span<const ScheduleRow> rows, std::chrono::year year, const TradingDays* calendar,
                      Language language, const Progress& progress) {
  return YearPage(rows, year, calendar, language == Language::chinese ? chinese : english, progress).write();
}

}  // namespace workbench::schedule
