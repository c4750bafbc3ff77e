#pragma once

#include <string>

namespace zd_expiration_rule_plugin {

/// The texts that the description sentence of a rule consists of, as the editor's controls show them.
struct RuleDescriptionTexts {
  std::wstring offset_label;
  std::wstring offset;  ///< as typed
  std::wstring day_type;
  std::wstring offset_suffix;
  std::wstring day_label;

  bool by_day_of_month = false;  ///< chooses between the two groups that follow
  std::wstring day_of_month;
  std::wstring day_suffix;
  std::wstring day_month;

  std::wstring week_ordinal;
  std::wstring weekday;
  std::wstring weekday_suffix;
  std::wstring weekday_month;

  std::wstring closing_or;
  std::wstring closing_direction;  ///< "previous" or "next"
  std::wstring closing_trading_day;
};

/// Reads a rule as one sentence. Texts are parted by exactly one space and empty ones are not skipped; the day type,
/// the day label and the month are put in lower case.
std::wstring describe_rule(const RuleDescriptionTexts& texts);

}  // namespace zd_expiration_rule_plugin
