#include "Mistakes.h"

#include <array>

#include "Utf8.h"

namespace workbench::schedule {

namespace {

struct Message {
  MistakeKind kind;
  const char* english;
  const char* chinese;
};

constexpr std::array messages{
    Message{MistakeKind::not_utf8, "expected UTF-8: save as UTF-8", "应为 UTF-8：请另存为 UTF-8"},
    Message{MistakeKind::not_text, "expected UTF-8, or UTF-16 with a byte order mark: save as UTF-8",
            "应为 UTF-8 或带字节顺序标记的 UTF-16：请另存为 UTF-8"},
    Message{MistakeKind::unterminated_quote, "expected a quotation mark that ends the field", "应有结束该字段的引号"},
    Message{MistakeKind::misplaced_quote,
            R"(expected quotation marks around the whole field, and doubled within it; found "%1")",
            R"(引号应括住整个字段，字段内的引号应成对；实为 "%1")"},
    Message{MistakeKind::field_count, "expected %1 fields, found %2", "应有 %1 个字段，实有 %2 个"},
    Message{MistakeKind::unknown_key,
            R"(expected "# key: value" with one of the keys name, title, covers, from, to, weekend, source; )"
            R"(found "%1")",
            R"(应为 "# 键: 值"，键为 name、title、covers、from、to、weekend、source 之一；实为 "%1")"},
    Message{MistakeKind::repeated_key, "expected the key %1 only once", "键 %1 只应出现一次"},
    Message{MistakeKind::missing_key, R"(expected a line "# %1: ..." above the days)",
            R"(日期之前应有 "# %1: ..." 一行)"},
    Message{MistakeKind::calendar_name,
            R"(expected a name of 1 to 255 characters that is not the name of a file, found "%1")",
            R"(应为 1 至 255 个字符且不是文件名的名称，实为 "%1")"},
    Message{MistakeKind::day, R"(expected a day like 2026-01-16, from 1900 to 2199; found "%1")",
            R"(应为 1900 至 2199 年间形如 2026-01-16 的日期；实为 "%1")"},
    Message{MistakeKind::day_order_of_range, "expected a last day that is not before %1, found %2",
            "末日不应早于 %1，实为 %2"},
    Message{MistakeKind::weekend, R"(expected weekdays like "Saturday, Sunday", at most six, or "none"; found "%1")",
            R"(应为形如 "Saturday, Sunday" 的星期名（至多六个）或 "none"；实为 "%1")"},
    Message{MistakeKind::calendar_columns, R"(expected the line of columns "date" or "date,reason", found "%1")",
            R"(应为列名行 "date" 或 "date,reason"，实为 "%1")"},
    Message{MistakeKind::repeated_day, "expected each day once, found %1 again", "每个日期只应出现一次，%1 重复"},
    Message{MistakeKind::descending_day, "expected a day after %1, found %2", "应为 %1 之后的日期，实为 %2"},
    Message{MistakeKind::day_on_weekend, "expected a day that is not on the weekend, found %1",
            "应为周末以外的日期，实为 %1"},
    Message{MistakeKind::day_outside, "expected a day from %1 to %2, found %3", "应为 %1 至 %2 的日期，实为 %3"},
    Message{MistakeKind::missing_column, "expected a column %1", "应有列 %1"},
    Message{MistakeKind::repeated_column, "expected the column %1 only once", "列 %1 只应出现一次"},
    Message{MistakeKind::contract, R"(expected a contract like 2026-01, 202601, 2601, IF2601 or CLF26; found "%1")",
            R"(应为形如 2026-01、202601、2601、IF2601 或 CLF26 的合约；实为 "%1")"},
    Message{MistakeKind::repeated_contract, "expected each contract once, found %1 again",
            "每个合约只应出现一次，%1 重复"},
    Message{MistakeKind::no_rule_name, "expected the name of a rule", "应有规则名称"},
    Message{MistakeKind::icalendar_line, R"(expected a line of an iCalendar file, found "%1")",
            R"(应为 iCalendar 文件的一行，实为 "%1")"},
    Message{MistakeKind::icalendar_end, "expected END:%1", "应为 END:%1"},
    Message{MistakeKind::icalendar_day, R"(expected an all-day event with days like 20260116, found "%1")",
            R"(应为日期形如 20260116 的全天事件，实为 "%1")"},
    Message{MistakeKind::icalendar_repeats, R"(expected an event that does not repeat, found "%1")",
            R"(应为不重复的事件，实为 "%1")"},
    Message{MistakeKind::icalendar_no_start, "expected an event with DTSTART", "事件应有 DTSTART"},
    Message{MistakeKind::icalendar_end_before_start, "expected an event that does not end before it starts",
            "事件的结束不应早于开始"},
    Message{MistakeKind::icalendar_no_event, "expected at least one event (BEGIN:VEVENT)",
            "应至少有一个事件（BEGIN:VEVENT）"},
    Message{MistakeKind::stored_name, R"(expected a name of 1 to 255 characters, found "%1")",
            R"(应为 1 至 255 个字符的名称，实为 "%1")"},
    Message{MistakeKind::number, R"(expected a whole number of 32 bits as %1, found "%2")",
            R"(%1 应为 32 位整数，实为 "%2")"},
    Message{MistakeKind::number_range, "expected %1 from %2 to %3, found %4", "%1 应为 %2 至 %3，实为 %4"},
    Message{MistakeKind::months, R"(expected ascending letters of delivery months like HMUZ, or none; found "%1")",
            R"(应为升序的交割月字母，形如 HMUZ，或为空；实为 "%1")"},
    Message{MistakeKind::last_trading_day, R"(expected "roll" or "expiration", found "%1")",
            R"(应为 "roll" 或 "expiration"，实为 "%1")"},
    Message{MistakeKind::repeated_rule, R"(expected each rule once; "%1" is on line %2 already)",
            R"(每条规则只应出现一次；"%1" 已在第 %2 行)"},
    Message{MistakeKind::edited_name,
            R"(the editor would refuse the name "%1": it accepts 1 to 63 letters, digits, spaces and asterisks)",
            R"(编辑器不接受名称 "%1"：只允许 1 至 63 个字母、数字、空格和星号)"},
    Message{MistakeKind::setting_rule_missing, R"(the setting "%1" uses the rule "%2", which does not exist)",
            R"(设置 "%1" 使用的规则 "%2" 不存在)"},
    Message{MistakeKind::setting_calendar_missing, R"(the setting "%1" names the calendar "%2", which does not exist)",
            R"(设置 "%1" 指定的日历 "%2" 不存在)"},
    Message{MistakeKind::json, R"(expected JSON like {"rules": [{"RuleName": ...}], "settings": [...]})",
            R"(应为形如 {"rules": [{"RuleName": ...}], "settings": [...]} 的 JSON)"},
    Message{MistakeKind::json_text, "expected a text as %1, found %2", "%1 应为文本，实为 %2"},
    Message{MistakeKind::unknown_argument, "unknown argument: %1", "未知的参数：%1"},
    Message{MistakeKind::missing_value, "%1 needs a value", "参数 %1 缺少值"},
    Message{MistakeKind::bad_value, R"("%2" is no value of %1)", R"("%2" 不是 %1 的值)"},
    Message{MistakeKind::second_command, "only one command at a time: %1 and %2", "一次只能执行一个命令：%1 与 %2"},
    Message{MistakeKind::missing_option, "exactly one of these is needed: %1", "应给出以下之一：%1"},
    Message{MistakeKind::unreadable_file, "%1: the file cannot be read", "%1：无法读取文件"},
    Message{MistakeKind::unknown_rule, R"(there is no rule "%1")", R"(没有规则 "%1")"},
    Message{MistakeKind::unknown_calendar, R"(there is no calendar "%1")", R"(没有日历 "%1")"},
    Message{MistakeKind::calendar_needed,
            R"(no setting gives the rule "%1" a calendar: add one that does, or name a calendar with --calendar)",
            R"(没有设置为规则 "%1" 指定日历：请添加设置，或用 --calendar 指定)"},
    Message{MistakeKind::calendar_missing, R"(no setting gives the rule "%1" a calendar: choose one)",
            R"(没有设置为规则 "%1" 指定日历：请选择日历)"},
    Message{MistakeKind::setting_without_calendar,
            R"(the setting "%1" of the rule "%2" names no calendar and is left out)",
            R"(设置 "%1"（规则 "%2"）未指定日历，已略过)"},
    Message{MistakeKind::setting_of_unknown_calendar,
            R"(the setting "%1" of the rule "%2" names the calendar "%3", which does not exist, and is left out)",
            R"(设置 "%1"（规则 "%2"）指定的日历 "%3" 不存在，已略过)"},
    Message{MistakeKind::no_delivery_month, R"(no setting of the rule "%1" has %2 among its delivery months)",
            R"(规则 "%1" 的设置的交割月均不包括 %2)"},
    Message{MistakeKind::ignored_column, R"(%1: the column "%2" is ignored)", R"(%1：忽略列 "%2")"},
    Message{MistakeKind::closed_date, "the exchange is closed on %1", "交易所在 %1 休市"},
    Message{MistakeKind::date_beyond_calendar, "%1 lies beyond the calendar and does not count",
            "%1 超出日历范围，不计入"},
    Message{MistakeKind::no_rule_found, "no rule gives all %1 dates; the best ones are listed",
            "没有规则符合全部 %1 个日期；列出最接近的规则"},
    Message{MistakeKind::no_date_counts, "none of the dates counts, so no rule can be found",
            "没有计入的日期，无法查找规则"},
    Message{MistakeKind::one_rule_found, "one rule gives all %1 dates", "有一条规则符合全部 %1 个日期"},
    Message{MistakeKind::rules_found, "%2 rules give all %1 dates; more dates would separate them",
            "有 %2 条规则符合全部 %1 个日期；更多日期可加以区分"},
    Message{MistakeKind::unsuitable_option, "%2 takes no %1", "%2 不接受 %1"},
    Message{MistakeKind::cancelled, "cancelled; nothing was changed", "已取消；未作任何改动"},
    Message{MistakeKind::not_csv, R"(CSV cannot hold the name "%1"; JSON can)",
            R"(CSV 无法保存名称 "%1"；请使用 JSON)"},
    Message{MistakeKind::import_summary, "%1 added, %2 changed, %3 left alone, %4 removed, %5 refused",
            "新增 %1，更改 %2，不变 %3，删除 %4，拒绝 %5"},
    Message{MistakeKind::nothing_imported, "nothing was changed", "未作任何改动"},
    Message{MistakeKind::icalendar_needs, "%1: an iCalendar file needs %2", "%1：iCalendar 文件需要 %2"},
    Message{MistakeKind::calendar_says_itself, "%1: a calendar file has its own name and days; only iCalendar takes %2",
            "%1：日历文件自带名称和起止日；仅 iCalendar 需要 %2"},
    Message{MistakeKind::new_calendar, "the calendar %1 is new and knows the days from %2 to %3",
            "日历 %1 是新的，包含 %2 至 %3"},
    Message{MistakeKind::calendar_range, "the calendar %1 knew the days from %2 to %3, and now those from %4 to %5",
            "日历 %1 原包含 %2 至 %3，现包含 %4 至 %5"},
    Message{MistakeKind::calendar_summary, "%1 days and %2 dates of rules change", "有 %1 个日期和 %2 个规则日期变化"},
    Message{MistakeKind::same_calendar, "the calendar %1 is the same already", "日历 %1 没有变化"},
    Message{
        MistakeKind::older_calendar,
        "the calendar %1 of this store is older than the one that comes with the program, which the workbench offers "
        "when it opens the store",
        "此规则库的日历 %1 比程序自带的旧；工作台打开规则库时可更新"},
    Message{MistakeKind::output_not_written, "the output cannot be written", "无法写入输出"},
    Message{MistakeKind::file_not_written, "%1: the file cannot be written; it is as it was",
            "%1：无法写入文件，文件保持原样"},
};

constexpr bool is_in_order() {
  for (std::size_t i = 0; i < messages.size(); ++i) {
    if (messages[i].kind != static_cast<MistakeKind>(i)) return false;
  }
  return messages.size() == static_cast<std::size_t>(MistakeKind::last_kind);
}
static_assert(is_in_order());

}  // namespace

std::string describe(const Mistake& mistake, Language language) {
  const Message& message = messages[static_cast<std::size_t>(mistake.kind)];
  const std::string_view text = language == Language::chinese ? message.chinese : message.english;
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      result += text[i];
      continue;
    }
    const auto number = static_cast<std::size_t>(text[++i] - '1');
    if (number < mistake.parameters.size()) result += printable_excerpt(mistake.parameters[number]);
  }
  return result;
}

std::string describe(std::string_view file, const Mistake& mistake, Language language) {
  return std::string(file) + ':' + std::to_string(mistake.line) + ": " + describe(mistake, language);
}

}  // namespace workbench::schedule
