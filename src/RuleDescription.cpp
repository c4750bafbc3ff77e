#include "RuleDescription.h"

#include <cwctype>
#include <initializer_list>

namespace zd_expiration_rule_plugin {

namespace {

std::wstring lower_case(std::wstring text) {
  for (wchar_t& unit : text) unit = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(unit)));
  return text;
}

std::wstring joined_by_spaces(std::initializer_list<std::wstring> texts) {
  std::wstring sentence;
  const wchar_t* separator = L"";
  for (const std::wstring& text : texts) {
    sentence += separator;
    sentence += text;
    separator = L" ";
  }
  return sentence;
}

}  // namespace

std::wstring describe_rule(const RuleDescriptionTexts& texts) {
  const std::wstring offset = joined_by_spaces(
      {texts.offset_label, texts.offset, lower_case(texts.day_type), texts.offset_suffix, lower_case(texts.day_label)});
  const std::wstring day = texts.by_day_of_month
                               ? joined_by_spaces({texts.day_of_month, texts.day_suffix, lower_case(texts.day_month)})
                               : joined_by_spaces({texts.week_ordinal, texts.weekday, texts.weekday_suffix,
                                                   lower_case(texts.weekday_month)});
  return joined_by_spaces({offset, day, texts.closing_or, texts.closing_direction, texts.closing_trading_day});
}

}  // namespace zd_expiration_rule_plugin
