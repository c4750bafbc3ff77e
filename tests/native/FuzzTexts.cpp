#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "RegistryScript.h"
#include "RuleDescription.h"
#include "RuleName.h"

/// Any bytes as a registration script, a rule name and the texts of a sentence.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::wstring text;
  for (std::size_t i = 0; i < size; ++i) text += static_cast<wchar_t>(data[i]);
  try {
    platform::parse_registry_script(text, {{L"ID", L"{1}"}});
    platform::parse_registry_script(L"HKCR { " + text + L" }", {{L"ID", L"{1}"}});
  } catch (const platform::RegistryScriptError&) {
  }
  using namespace zd_expiration_rule_plugin;
  bool any = false;
  for (const wchar_t unit : text) any = any || has_invalid_name_characters({&unit, 1});
  if (any != has_invalid_name_characters(text)) std::abort();
  RuleDescriptionTexts texts;
  texts.offset = texts.day_type = texts.weekday_month = text;
  if (describe_rule(texts).size() != 3 * text.size() + 12 - 1) std::abort();
  return 0;
}
