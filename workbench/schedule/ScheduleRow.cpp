#include "ScheduleRow.h"

namespace workbench::schedule {

std::vector<std::string> flag_names(const ContractDates& dates) {
  std::vector<std::string> names;
  const auto add = [&](bool flag, const char* name) {
    if (flag) names.emplace_back(name);
  };
  add(dates.clamped, "clamped");
  add(dates.moved, "moved");
  add(dates.closed, "closed");
  add(dates.has(Basis::beyond_calendar), "beyond-calendar");
  add(dates.has(Basis::estimate), "estimate");
  for (std::size_t i = 0; i < rule_fields.size(); ++i) {
    if ((dates.invalid_fields >> i & 1U) != 0) names.push_back(std::string("no-date:") + rule_fields[i].name);
  }
  return names;
}

std::string joined(const std::vector<std::string>& texts, std::string_view separator) {
  std::string result;
  for (std::size_t i = 0; i < texts.size(); ++i) result.append(i == 0 ? "" : separator).append(texts[i]);
  return result;
}

std::string known_text(const ContractDay& day) { return day.date ? to_text(*day.date) : std::string(); }

}  // namespace workbench::schedule
