#include "RuleFinder.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <tuple>

namespace workbench::schedule {

namespace {

using std::chrono::days;

constexpr int greatest_offset = 99;
constexpr std::size_t best_rules = 10;
constexpr std::size_t form_count = 396;
constexpr std::size_t offset_count = 1 + 2 * greatest_offset;
static_assert(form_count * offset_count == rule_count);

/// What decides on the order of rules with the same offset.
auto form_order(const RuleNumbers& rule) {
  const bool by_day = rule.day_mode == 0;
  constexpr std::array month_order{2, 0, 1};
  const auto month = static_cast<std::size_t>(by_day ? rule.day_month : rule.weekday_month);
  const bool on_weekend = !by_day && (rule.weekday == 0 || rule.weekday == 6);
  return std::tuple(by_day, month_order.at(month), on_weekend, rule.day_of_month, rule.week_ordinal, rule.weekday,
                    rule.move_to_next_trading_day);
}

/// Every rule without offset, in order.
std::vector<RuleNumbers> make_forms() {
  std::vector<RuleNumbers> forms;
  for (const int move : {0, 1}) {
    for (const int month : {0, 1, 2}) {
      for (int day = 1; day <= 31; ++day)
        forms.push_back({.day_of_month = day, .day_month = month, .move_to_next_trading_day = move});
      for (int i = 0; i < 35; ++i) {
        forms.push_back({.day_mode = 1,
                         .week_ordinal = 1 + i / 7,
                         .weekday = i % 7,
                         .weekday_month = month,
                         .move_to_next_trading_day = move});
      }
    }
  }
  std::ranges::sort(forms, {}, form_order);
  return forms;
}

const std::vector<RuleNumbers>& all_forms() {
  static const std::vector<RuleNumbers> forms = make_forms();
  return forms;
}

RuleNumbers with_offset(RuleNumbers rule, std::int32_t unit, std::int64_t offset) {
  rule.roll_offset = static_cast<std::int32_t>(offset);
  rule.day_type = unit;
  return rule;
}

/// Counts for each rule how many dates it gives. For one date and one form at most one offset of each unit fits, so
/// none of the others is looked at.
class MatchCounts {
 public:
  MatchCounts(const TradingDays& calendar, Against against)
      : calendar_(calendar), against_(against), counts_(rule_count) {}

  void add(const KnownDate& known) {
    for (std::size_t form = 0; form < form_count; ++form) add(known, form);
  }

  const std::vector<std::uint32_t>& counts() const { return counts_; }

 private:
  void add(const KnownDate& known, std::size_t form) {
    const RuleNumbers& rule = all_forms()[form];
    // With estimates, since a roll day can be known when its expiration day is not.
    const Day expiration = *contract_dates(rule, known.contract, calendar_, {.estimates = true}).expiration.date;
    if (against_ == Against::expiration) {
      if (!gives(rule, known)) return;
      for (std::size_t offset = 0; offset < offset_count; ++offset) ++counts_[offset * form_count + form];
      return;
    }
    if (gives(rule, known)) ++counts_[form];
    const std::int64_t open_days = calendar_.number_at(expiration) - calendar_.number_at(known.date);
    const std::int64_t all_days = (expiration - known.date).count();
    count_offset(known, form, 0, open_days);
    count_offset(known, form, 1, all_days);
  }

  void count_offset(const KnownDate& known, std::size_t form, std::int32_t unit, std::int64_t offset) {
    if (offset < 1 || offset > greatest_offset) return;
    if (!gives(with_offset(all_forms()[form], unit, offset), known)) return;
    const std::int64_t slot = (unit == 1 ? greatest_offset : 0) + offset;
    ++counts_[static_cast<std::size_t>(slot) * form_count + form];
  }

  bool gives(const RuleNumbers& rule, const KnownDate& known) const {
    return chosen(contract_dates(rule, known.contract, calendar_), against_).date == known.date;
  }

  const TradingDays& calendar_;
  Against against_;
  std::vector<std::uint32_t> counts_;
};

/// The positions of the rules that give the most dates, the most first.
std::vector<std::size_t> best_positions(const std::vector<std::uint32_t>& counts) {
  std::vector<std::size_t> positions(counts.size());
  std::iota(positions.begin(), positions.end(), std::size_t{0});
  const auto end = positions.begin() + best_rules;
  std::ranges::partial_sort(positions, end, {},
                            [&](std::size_t at) { return std::tuple(-static_cast<std::int64_t>(counts[at]), at); });
  positions.erase(std::find_if(positions.begin(), end, [&](std::size_t at) { return counts[at] == 0; }),
                  positions.end());
  positions.resize(std::min(positions.size(), best_rules));
  return positions;
}

}  // namespace

RuleNumbers rule_at(std::size_t position) {
  const auto slot = static_cast<int>(position / form_count);
  const int unit = slot > greatest_offset ? 1 : 0;
  return with_offset(all_forms().at(position % form_count), unit, slot - unit * greatest_offset);
}

FoundRules find_rules(std::span<const KnownDate> dates, const TradingDays& calendar, Against against,
                      std::optional<std::size_t> limit, const Progress& progress) {
  FoundRules found;
  std::vector<KnownDate> counted;
  MatchCounts matches(calendar, against);
  const Progress counting = part_of(progress, 0, 90);
  for (std::size_t i = 0; i < dates.size(); ++i) {
    advance(counting, i, dates.size());
    const KnownDate& known = dates[i];
    if (!calendar.covers(known.date)) {
      found.beyond_calendar.push_back(known);
      continue;
    }
    if (!calendar.is_open(known.date)) found.closed.push_back(known);
    counted.push_back(known);
    matches.add(known);
  }
  found.counted = counted.size();
  if (counted.empty()) return found;

  std::vector<std::size_t> positions;
  for (std::size_t at = 0; at < rule_count; ++at) {
    if (matches.counts()[at] == counted.size()) positions.push_back(at);
  }
  found.agreeing = positions.size();
  if (positions.empty()) positions = best_positions(matches.counts());
  if (limit && *limit < positions.size()) positions.resize(*limit);
  const Progress listing = part_of(progress, 90, 100);
  for (const std::size_t at : positions) {
    advance(listing, found.rules.size(), positions.size());
    FoundRule rule{rule_at(at), matches.counts()[at]};
    for (const KnownDate& known : counted) {
      if (chosen(contract_dates(rule.rule, known.contract, calendar), against).date != known.date)
        rule.missed.push_back(known.contract);
    }
    found.rules.push_back(std::move(rule));
  }
  return found;
}

}  // namespace workbench::schedule
