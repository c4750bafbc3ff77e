#include "YearPage.h"

#include <array>
#include <map>

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
    "估计"};

// The marks differ in shape too, for printers without colours.
constexpr const char* expiration_mark = "●";
constexpr const char* roll_mark = "▲";
constexpr const char* estimate_mark = "?";

constexpr const char* style =
    "@page{size:A4 landscape;margin:8mm}"
    "body{font:9pt/1.2 sans-serif;margin:1em;color:#111;background:#fff}"
    "h1{font-size:14pt;margin:0 0 .3em}p{margin:.3em 0}"
    ".year{display:grid;grid-template-columns:repeat(4,1fr);gap:.6em}"
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
    "@media print{body{margin:0}.list{break-before:page}}";

struct Event {
  const ScheduleRow* row;
  bool is_roll;
  bool is_estimate;
};

class YearPage {
 public:
  YearPage(std::span<const ScheduleRow> rows, std::chrono::year year, const TradingDays* calendar, const Words& words)
      : rows_(rows), year_(year), calendar_(calendar), words_(words) {
    for (const ScheduleRow& row : rows) {
      add_event(row, row.dates.expiration, false);
      add_event(row, row.dates.roll, true);
    }
  }

  std::string write() {
    const std::string title = std::to_string(static_cast<int>(year_)) + ' ' + words_.title;
    text_ = std::string("<!DOCTYPE html>\n<html lang=\"") + words_.language +
            "\">\n<head>\n<meta charset=\"utf-8\">\n<title>" + title + "</title>\n<style>" + style +
            "</style>\n</head>\n<body>\n<h1>" + title + "</h1>\n";
    text_ += std::string("<p>") + expiration_mark + ' ' + words_.expiration + " &nbsp; " + roll_mark + ' ' +
             words_.roll + " &nbsp; <span class=\"closed\">1</span> " + words_.closed + " &nbsp; " + estimate_mark +
             ' ' + words_.estimate + "</p>\n<div class=\"year\">\n";
    for (unsigned month = 1; month <= 12; ++month) write_month(year_ / std::chrono::month{month});
    text_ += "</div>\n";
    write_table();
    text_ += "</body>\n</html>\n";
    return std::move(text_);
  }

 private:
  void add_event(const ScheduleRow& row, const ContractDay& day, bool is_roll) {
    if (day.date) events_.emplace(*day.date, Event{&row, is_roll, day.basis == Basis::estimate});
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
    const auto [begin, end] = events_.equal_range(day);
    for (auto event = begin; event != end; ++event) (event->second.is_roll ? roll : expiration) = true;
    std::string classes;
    if (is_closed(day)) classes += " closed";
    if (expiration) classes += " expiration";
    if (roll) classes += " roll";
    const unsigned number = static_cast<unsigned>(std::chrono::year_month_day{day}.day());
    text_ += (classes.empty() ? "<td>" : "<td class=\"" + classes.substr(1) + "\">") + std::to_string(number) +
             (expiration ? expiration_mark : "") + (roll ? roll_mark : "") + "</td>";
  }

  void write_events(Day first, Day last) {
    const auto begin = events_.lower_bound(first);
    const auto end = events_.upper_bound(last);
    if (begin == end) return;
    text_ += "<ul>";
    for (auto event = begin; event != end; ++event) {
      const auto& [day, what] = *event;
      text_ += "<li>" + std::to_string(static_cast<unsigned>(std::chrono::year_month_day{day}.day())) + ' ' +
               (what.is_roll ? roll_mark : expiration_mark) + (what.is_estimate ? estimate_mark : "") + ' ' +
               html_text(subject(*what.row)) + ' ' + to_text(what.row->dates.contract) + "</li>";
    }
    text_ += "</ul>";
  }

  static std::string subject(const ScheduleRow& row) {
    return row.setting.empty() ? row.rule : row.rule + " (" + row.setting + ')';
  }

  void write_table() {
    text_ += "<table class=\"list\"><thead><tr>";
    for (const char* column : words_.columns) text_ += std::string("<th>") + column + "</th>";
    text_ += "</tr></thead><tbody>\n";
    for (const ScheduleRow& row : rows_) {
      text_ += "<tr><td>" + html_text(row.rule) + "</td><td>" + html_text(row.setting) + "</td><td>" +
               to_text(row.dates.contract) + "</td>";
      for (const ContractDay& day : {row.dates.specified, row.dates.expiration, row.dates.roll}) {
        const bool estimate = day.basis == Basis::estimate;
        text_ += (estimate ? "<td class=\"estimate\">" : "<td>") + known_text(day) + (estimate ? estimate_mark : "") +
                 "</td>";
      }
      text_ += "<td>" + joined(flag_names(row.dates), "; ") + "</td></tr>\n";
    }
    text_ += "</tbody></table>\n";
  }

  std::span<const ScheduleRow> rows_;
  std::chrono::year year_;
  const TradingDays* calendar_;
  const Words& words_;
  std::multimap<Day, Event> events_;
  std::string text_;
};

}  // namespace

std::string year_page(std::span<const ScheduleRow> rows, std::chrono::year year, const TradingDays* calendar,
                      Language language) {
  return YearPage(rows, year, calendar, language == Language::chinese ? chinese : english).write();
}

}  // namespace workbench::schedule
