#include "FuzzInput.h"
#include "RegistryScript.h"
#include "RuleDescription.h"
#include "RuleMessages.h"
#include "RuleName.h"

namespace {

using namespace zd_expiration_rule_plugin;
using native_test::expect;
using native_test::Input;

void read_script(std::wstring_view script) {
  try {
    platform::parse_registry_script(script, {{L"ID", L"{1}"}});
  } catch (const platform::RegistryScriptError&) {
  }
}

/// Bytes of a script are mostly ASCII; read as units, most of them would be letters of no meaning.
void scripts(Input input) {
  std::wstring narrow;
  for (const std::uint8_t byte : input.left()) narrow += static_cast<wchar_t>(byte);
  for (const std::wstring& text : {narrow, input.take_text()}) {
    read_script(text);
    read_script(L"HKCR { " + text + L" }");
  }
}

void names(const std::wstring& name) {
  bool any = false;
  for (const wchar_t unit : name) any = any || has_invalid_name_characters({&unit, 1});
  expect(any == has_invalid_name_characters(name));
}

void sentence(Input input) {
  RuleDescriptionTexts texts;
  texts.by_day_of_month = input.take<bool>();
  std::size_t units = 0;
  std::wstring* const parts[] = {
      &texts.offset_label, &texts.offset,         &texts.day_type,          &texts.offset_suffix,
      &texts.day_label,    &texts.closing_or,     &texts.closing_direction, &texts.closing_trading_day,
      &texts.day_of_month, &texts.day_suffix,     &texts.day_month,         &texts.week_ordinal,
      &texts.weekday,      &texts.weekday_suffix, &texts.weekday_month};
  for (std::wstring* part : parts) *part = input.take_text(input.take<std::uint8_t>());
  const std::size_t day_texts = texts.by_day_of_month ? 3 : 4;
  const std::size_t first_day_text = texts.by_day_of_month ? 8 : 11;
  for (std::size_t index = 0; index < 8; ++index) units += parts[index]->size();
  for (std::size_t index = 0; index < day_texts; ++index) units += parts[first_day_text + index]->size();
  expect(describe_rule(texts).size() == units + 8 + day_texts - 1);
}

void messages(Input input) {
  std::vector<std::wstring> users(input.take<std::uint8_t>() % 6);
  std::size_t units = 3 + 1;
  for (std::size_t index = 0; index < users.size(); ++index) {
    users[index] = input.take_text(input.take<std::uint8_t>());
    if (index < 3)
      units += users[index].find(L'\0') != std::wstring::npos ? users[index].find(L'\0') : users[index].size();
    if (index > 0 && index < 3) units += 2;
  }
  if (users.size() > 3) units += 5;
  expect(rule_in_use_text(L"no:", users).size() == units);
  const std::wstring name = input.take_text();
  expect(confirm_delete_text(L"<%s>", name) == L"<" + name.substr(0, name.find(L'\0')) + L">");
}

/// The script, of which the input replaces some units.
std::wstring damaged(std::wstring script, Input& input) {
  for (unsigned left = input.take<std::uint8_t>() % 16; left > 0; --left) {
    const std::size_t position = input.take<std::uint16_t>() % script.size();
    script[position] = static_cast<wchar_t>(input.take<std::uint16_t>());
  }
  return script;
}

const std::wstring sound_script =
    L"HKCR { NoRemove CLSID { ForceRemove '%ID%' = s 'it''s' { val Flags = d 12 val M = s x } } }";

}  // namespace

/// Any bytes as a registration script, a name, and the texts of a sentence and of messages.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Input input(data, size);
  scripts(input);
  names(Input(input).take_text());
  sentence(input);
  messages(input);
  Input damage(input);
  read_script(damaged(sound_script, damage));
  return 0;
}
