#include "ScheduleModel.h"

#include <algorithm>
#include <map>
#include <span>

#include "DateList.h"

namespace workbench {

namespace {

using schedule::Basis;
using schedule::ContractDates;
using schedule::Month;
using schedule::NamedRule;
using schedule::NamedSetting;
using schedule::TradingDays;

/// A rule and the setting that uses it, if one is meant.
struct Subject {
  const NamedRule* rule;
  const NamedSetting* setting;
};

template <class Item>
const Item* find_number(const std::vector<Numbered<Item>>& items, long number) {
  const auto found = std::ranges::lower_bound(items, number, {}, &Numbered<Item>::number);
  return found == items.end() || found->number != number ? nullptr : &found->item;
}

/// Adds the lines of one subject after another to a schedule.
class ScheduleBuilder {
 public:
  ScheduleBuilder(const ScheduleData& data, const ScheduleChoice& choice, const schedule::Progress& progress)
      : data_(data), choice_(choice), progress_(progress), contracts_(contracts_of(choice)) {
    for (const auto& rule : data.rules) rules_.emplace(rule.item.name, &rule.item);
    for (const auto& setting : data.settings) users_.emplace(setting.item.rule, &setting.item);
  }

  bool is_used(const NamedRule& rule) const { return users_.contains(rule.name); }

  void add_setting(const NamedSetting& setting) {
    if (const auto rule = rules_.find(setting.rule); rule != rules_.end()) {
      add({rule->second, &setting});
    } else {
      refuse(setting.rule.empty() ? NoDatesReason::no_rule : NoDatesReason::rule_missing, setting.rule);
    }
  }

  /// Adds each setting that uses the rule, or the rule itself if none does.
  void add_rule(const NamedRule& rule) {
    const auto [begin, end] = users_.equal_range(rule.name);
    const auto count = static_cast<std::size_t>(std::distance(begin, end));
    std::size_t done = 0;
    for (auto user = begin; user != end; ++user) {
      schedule::advance(progress_, done++, count);
      add({&rule, user->second});
    }
    if (begin == end) add({&rule, nullptr});
  }

  void refuse(NoDatesReason reason, const std::string& subject) {
    if (built_.reason != NoDatesReason::none) return;
    built_.reason = reason;
    built_.subject = subject;
  }

  std::vector<ScheduleLine>& lines() { return built_.lines; }

  Schedule finish() {
    if (!built_.lines.empty()) built_.reason = NoDatesReason::none;
    for (const ScheduleLine& line : built_.lines) {
      note_calendar(line.calendar);
      note_beginning(line);
    }
    return std::move(built_);
  }

 private:
  void add(const Subject& subject) {
    const std::string& name =
        choice_.calendar.empty() && subject.setting ? subject.setting->calendar : choice_.calendar;
    if (name.empty()) return refuse(NoDatesReason::no_calendar, subject.rule->name);
    const TradingDays* days = open_days(name);
    if (!days) return refuse(NoDatesReason::calendar_missing, name);
    std::optional<ContractDates> previous = before_first(subject, *days);
    for (Month contract = contracts_.first; contract <= contracts_.last; contract += std::chrono::months{1}) {
      if (!delivers(subject, contract)) continue;
      const ContractDates dates = dates_of(subject, contract, *days);
      if (choice_.year && !lies_in_year(dates, *choice_.year)) continue;
      built_.lines.push_back(
          {{subject.rule->name, subject.setting ? subject.setting->name : std::string(), dates, name},
           name,
           attention_of(dates, previous)});
      previous = dates;
    }
  }

  static schedule::ContractRange contracts_of(const ScheduleChoice& choice) {
    if (!choice.year) return {choice.first, choice.first + std::chrono::months{choice.months - 1}};
    return schedule::contracts_around(schedule::Day{*choice.year / 1 / 1}, schedule::Day{*choice.year / 12 / 31});
  }

  const TradingDays* open_days(const std::string& name) {
    const auto known = open_days_.find(name);
    if (known != open_days_.end()) return &known->second;
    const schedule::Calendar* calendar = find_calendar(name);
    return calendar ? &open_days_.emplace(name, trading_days(*calendar)).first->second : nullptr;
  }

  const schedule::Calendar* find_calendar(const std::string& name) const {
    const auto found = std::ranges::find(data_.calendars, name, &schedule::Calendar::name);
    return found == data_.calendars.end() ? nullptr : &*found;
  }

  void note_calendar(const std::string& name) {
    if (built_.calendar_names.contains(name)) return;
    built_.calendar_names.insert(name);
    const schedule::Calendar& calendar = *find_calendar(name);
    built_.calendar.reset();
    if (built_.calendar_names.size() == 1) built_.calendar = calendar;
    const schedule::Day unknown = calendar.to + std::chrono::days{1};
    if (!built_.unknown_from || unknown < *built_.unknown_from) built_.unknown_from = unknown;
  }

  /// Notes whether the line needs days before its calendar. A day that it does not have lies beyond the nearer end.
  void note_beginning(const ScheduleLine& line) {
    const ContractDates& dates = line.row.dates;
    if (!dates.has(Basis::beyond_calendar) && !dates.has(Basis::estimate)) return;
    const TradingDays& days = *open_days(line.calendar);
    schedule::Day first = *dates.specified.date;
    for (const schedule::ContractDay& day : {dates.expiration, dates.roll})
      first = std::min(first, day.date.value_or(first));
    const bool is_whole = dates.expiration.date && dates.roll.date;
    const bool before = first < days.from() || (!is_whole && first - days.from() < days.to() - first);
    if (before && (!built_.unknown_before || *built_.unknown_before < days.from())) built_.unknown_before = days.from();
  }

  static bool delivers(const Subject& subject, Month contract) {
    return !subject.setting || schedule::is_delivery_month(contract, subject.setting->months);
  }

  ContractDates dates_of(const Subject& subject, Month contract, const TradingDays& days) const {
    return contract_dates(subject.rule->numbers, contract, days, {.estimates = choice_.estimates});
  }

  /// The contract before the first one that is shown.
  std::optional<ContractDates> before_first(const Subject& subject, const TradingDays& days) const {
    for (int back = 1; back <= 12; ++back) {
      const Month contract = contracts_.first - std::chrono::months{back};
      if (delivers(subject, contract)) return dates_of(subject, contract, days);
    }
    return std::nullopt;
  }

  static std::uint8_t attention_of(const ContractDates& dates, const std::optional<ContractDates>& previous) {
    unsigned attention = attention_none;
    if (dates.closed) attention |= attention_closed_roll;
    if (dates.has(Basis::beyond_calendar)) attention |= attention_beyond_calendar;
    if (dates.invalid_fields != 0) attention |= attention_no_date;
    if (previous && previous->roll.date && dates.roll.date && *dates.roll.date <= *previous->roll.date)
      attention |= attention_roll_not_later;
    return static_cast<std::uint8_t>(attention);
  }

  const ScheduleData& data_;
  const ScheduleChoice& choice_;
  const schedule::Progress& progress_;
  schedule::ContractRange contracts_;
  std::map<std::string_view, const NamedRule*> rules_;
  std::multimap<std::string_view, const NamedSetting*> users_;  // by rule, in their order
  std::map<std::string, TradingDays> open_days_;
  Schedule built_;
};

/// The same contracts before and after a change.
class Comparison {
 public:
  Comparison(const ScheduleData& before, const ScheduleData& now, const ScheduleChoice& choice)
      : old_(before, choice, unreported_), builder_(now, choice, unreported_) {}

  bool is_used(const NamedRule& rule) const { return builder_.is_used(rule); }

  /// Adds the lines of an item if they differ from those that it had. `add_item` is the builder's method for the item.
  template <class Item>
  void add(const Item& now, const Item* before, void (ScheduleBuilder::*add_item)(const Item&)) {
    if (!before) return;
    old_.lines().clear();
    (old_.*add_item)(*before);
    const std::size_t begin = builder_.lines().size();
    (builder_.*add_item)(now);
    if (!set_beside(begin, old_.lines())) builder_.lines().resize(begin);
  }

  Schedule finish() { return builder_.finish(); }

 private:
  /// Puts the old dates beside the new lines from `begin` on. Returns whether there is a difference.
  bool set_beside(std::size_t begin, const std::vector<ScheduleLine>& old_lines) {
    bool differs = builder_.lines().size() - begin != old_lines.size();
    for (ScheduleLine& line : std::span(builder_.lines()).subspan(begin)) {
      const auto old = std::ranges::find(old_lines, line.row.dates.contract,
                                         [](const ScheduleLine& old_line) { return old_line.row.dates.contract; });
      if (old == old_lines.end() || old->row.dates == line.row.dates) continue;
      line.before = old->row.dates;
      differs = true;
    }
    return differs;
  }

  /// The progress within the lines of one item is not reported.
  schedule::Progress unreported_;
  ScheduleBuilder old_;
  ScheduleBuilder builder_;
};

}  // namespace

Schedule make_schedule(const ScheduleData& data, const ScheduleChoice& choice, const schedule::Progress& progress) {
  ScheduleBuilder builder(data, choice, progress);
  if (const NamedSetting* setting = find_number(data.settings, choice.setting)) {
    builder.add_setting(*setting);
  } else if (const NamedRule* rule = find_number(data.rules, choice.rule)) {
    builder.add_rule(*rule);
  } else {
    builder.refuse(NoDatesReason::nothing_selected, {});
  }
  return builder.finish();
}

Schedule compare_schedules(const ScheduleData& before, const ScheduleData& now, const ScheduleChoice& choice,
                           const schedule::Progress& progress) {
  Comparison comparison(before, now, choice);
  const std::size_t all = now.settings.size() + now.rules.size();
  std::size_t done = 0;
  for (const auto& setting : now.settings) {
    schedule::advance(progress, done++, all);
    comparison.add(setting.item, find_number(before.settings, setting.number), &ScheduleBuilder::add_setting);
  }
  for (const auto& rule : now.rules) {
    schedule::advance(progress, done++, all);
    if (!comparison.is_used(rule.item))
      comparison.add(rule.item, find_number(before.rules, rule.number), &ScheduleBuilder::add_rule);
  }
  return comparison.finish();
}

std::vector<schedule::ScheduleRow> rows_of(const Schedule& schedule) {
  std::vector<schedule::ScheduleRow> rows;
  rows.reserve(schedule.lines.size());
  for (const ScheduleLine& line : schedule.lines) rows.push_back(line.row);
  return rows;
}

}  // namespace workbench
