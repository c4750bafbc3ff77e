#include <gtest/gtest.h>

#include "RegistryScript.h"

namespace platform {
namespace {

using Removal = RegistryNode::Removal;

const Replacements no_replacements;

RegistryValue text(const std::wstring& name, const std::wstring& value, std::size_t keys_before = 0) {
  return {name, false, value, 0, keys_before};
}
RegistryValue number(const std::wstring& name, std::uint32_t value) { return {name, true, {}, value, 0}; }

struct ReadableScript {
  const char* name;
  const wchar_t* script;
  std::vector<RegistryNode> keys;
};

const ReadableScript readable_scripts[] = {
    {"NoKeys", L"HKCR { }", {}},
    {"WithoutSpaces", L"HKCR{A{B}}", {{L"A", Removal::own, {}, {{L"B", Removal::own, {}, {}}}}}},
    {"EveryKindOfSpace", L"\r\n\tHKCR\r\n{\tA }\r\n", {{L"A", Removal::own, {}, {}}}},
    {"DefaultValue", L"HKCR { A = s 'x' }", {{L"A", Removal::own, {text(L"", L"x")}, {}}}},
    {"DefaultNumber", L"HKCR { A = d 7 }", {{L"A", Removal::own, {number(L"", 7)}, {}}}},
    {"UnquotedText", L"HKCR { A = s x }", {{L"A", Removal::own, {text(L"", L"x")}, {}}}},
    {"EmptyText", L"HKCR { A = s '' }", {{L"A", Removal::own, {text(L"", L"")}, {}}}},
    {"NamedValue", L"HKCR { A { val B = s 'x' } }", {{L"A", Removal::own, {text(L"B", L"x")}, {}}}},
    {"NamedNumber", L"HKCR { A { val B = d 0 } }", {{L"A", Removal::own, {number(L"B", 0)}, {}}}},
    ReadableScript{
        "LargestNumber", L"HKCR { A = d 4294967295 }", {{L"A", Removal::own, {number(L"", 4294967295u)}, {}}}},
    {"NoRemove", L"HKCR { NoRemove A }", {{L"A", Removal::none, {}, {}}}},
    {"ForceRemove", L"HKCR { ForceRemove A }", {{L"A", Removal::complete, {}, {}}}},
    {"QuotedKeywordsAreNames",
     L"HKCR { 'NoRemove' 'val' 'ForceRemove' 's' }",
     {{L"NoRemove", Removal::own, {}, {}},
      {L"val", Removal::own, {}, {}},
      {L"ForceRemove", Removal::own, {}, {}},
      {L"s", Removal::own, {}, {}}}},
    ReadableScript{"QuotedNameWithSpacesAndBraces", L"HKCR { '{A b} = c' }", {{L"{A b} = c", Removal::own, {}, {}}}},
    {"DoubledQuoteIsAQuote", L"HKCR { A = s 'it''s ''''' }", {{L"A", Removal::own, {text(L"", L"it's ''")}, {}}}},
    {"ValuesAndKeysKeepTheirOrder",
     L"HKCR { A = s '0' { val Z = s '1' C B val Y = s '2' } }",
     {{L"A",
       Removal::own,
       {text(L"", L"0"), text(L"Z", L"1"), text(L"Y", L"2", 2)},
       {{L"C", Removal::own, {}, {}}, {L"B", Removal::own, {}, {}}}}}},
    {"AnyCharacter",
     L"HKCR { '\u5230\u671f' = s '\U0001f4c8 ' }",
     {{L"\u5230\u671f", Removal::own, {text(L"", L"\U0001f4c8 ")}, {}}}}};

TEST(RegistryScript, IsReadAsWritten) {
  for (const ReadableScript& script : readable_scripts) {
    EXPECT_EQ(parse_registry_script(script.script, no_replacements), script.keys) << script.name;
  }
}

struct BrokenScript {
  const char* name;
  const wchar_t* script;
};

const BrokenScript broken_scripts[] = {

    {"Nothing", L""},
    {"OnlySpaces", L" \r\n"},
    {"AnotherRoot", L"HKLM { A }"},
    {"RootInLowerCase", L"hkcr { A }"},
    {"QuotedRoot", L"'HKCR' { A }"},
    {"RootWithoutBlock", L"HKCR A"},
    {"TextAfterTheEnd", L"HKCR { A } B"},
    {"SecondBlock", L"HKCR { A } { B }"},
    {"BraceTooMany", L"HKCR { A } }"},
    {"BlockWithoutKey", L"HKCR { { A } }"},
    {"AssignmentWithoutKey", L"HKCR { = s 'x' }"},
    {"KeyWithoutName", L"HKCR { '' }"},
    {"KeyWordWithoutKey", L"HKCR { NoRemove }"},
    {"KeyWordBeforeAssignment", L"HKCR { NoRemove = s 'x' }"},
    {"ValueWithoutName", L"HKCR { A { val } }"},
    {"ValueWithoutAssignment", L"HKCR { A { val B } }"},
    {"ValueWithoutType", L"HKCR { A = 'x' }"},
    {"UnknownType", L"HKCR { A = b '00' }"},
    {"QuotedType", L"HKCR { A = 's' 'x' }"},
    {"TypeWithoutText", L"HKCR { A = s }"},
    {"NumberTooLarge", L"HKCR { A = d 4294967296 }"},
    {"NumberFarTooLarge", L"HKCR { A = d 18446744073709551616 }"},
    {"NegativeNumber", L"HKCR { A = d -1 }"},
    {"HexadecimalNumber", L"HKCR { A = d 0x10 }"},
    {"EmptyNumber", L"HKCR { A = d '' }"},
    {"OpenQuote", L"HKCR { 'A }"},
    {"OpenReplacement", L"HKCR { '%A' }"},
    {"UnknownReplacement", L"HKCR { '%B%' }"},
    {"ReplacementInAnotherCase", L"HKCR { '%a%' }"}};

TEST(RegistryScript, IsRefusedWhenBroken) {
  for (const BrokenScript& script : broken_scripts) {
    EXPECT_THROW(parse_registry_script(script.script, {{L"A", L"a"}}), RegistryScriptError) << script.name;
  }
}

TEST(RegistryScript, IsRefusedWithANullAnywhere) {
  const std::wstring sound = L"HKCR { A = s 'x' { val B = d 1 } }";
  ASSERT_NO_THROW(parse_registry_script(sound, no_replacements));
  for (std::size_t position = 0; position <= sound.size(); ++position) {
    std::wstring script = sound;
    script.insert(position, 1, L'\0');
    EXPECT_THROW(parse_registry_script(script, no_replacements), RegistryScriptError) << "at " << position;
  }
}

constexpr wchar_t whole_script[] =
    L"HKCR { NoRemove CLSID { ForceRemove '%ID%' = s 'it''s' { val Flags = d 12 Server = s '%PATH%' { val M = s x } } "
    L"} }";
const Replacements whole_replacements = {{L"ID", L"{1}"}, {L"PATH", L"C:\\x.dll"}};

TEST(RegistryScript, IsRefusedWhenCutOffAtAnyLength) {
  const std::wstring_view script = whole_script;
  ASSERT_NO_THROW(parse_registry_script(script, whole_replacements));
  for (std::size_t length = 0; length < script.size(); ++length) {
    EXPECT_THROW(parse_registry_script(script.substr(0, length), whole_replacements), RegistryScriptError)
        << "at length " << length;
  }
}

TEST(RegistryScript, DamageInOneCharacterIsReadOrRefused) {
  for (std::size_t position = 0; position + 1 < std::size(whole_script); ++position) {
    for (const wchar_t damage : std::wstring_view(L"{}='% sd1x\0", 11)) {
      std::wstring script = whole_script;
      script[position] = damage;
      try {
        parse_registry_script(script, whole_replacements);
      } catch (const RegistryScriptError&) {
        continue;
      } catch (...) {
        ADD_FAILURE() << "another exception for " << static_cast<int>(damage) << " at " << position;
      }
    }
  }
}

std::wstring nested_script(int blocks) {
  std::wstring script = L"HKCR {";
  for (int block = 1; block < blocks; ++block) script += L"A {";
  return script.append(static_cast<std::size_t>(blocks), L'}');
}

TEST(RegistryScript, IsReadDownToTheDeepestKeyOfARegistryAndRefusedBelow) {
  EXPECT_NO_THROW(parse_registry_script(nested_script(512), no_replacements));
  EXPECT_THROW(parse_registry_script(nested_script(513), no_replacements), RegistryScriptError);
  EXPECT_THROW(parse_registry_script(nested_script(1'000'000), no_replacements), RegistryScriptError);
}

std::wstring default_text(const wchar_t* script, const Replacements& replacements) {
  return parse_registry_script(script, replacements).at(0).values.at(0).text;
}

TEST(RegistryScript, ReplacesInKeysValueNamesAndTexts) {
  const Replacements replacements = {{L"K", L"key"}, {L"V", L"value"}, {L"T", L"text"}};
  const std::vector<RegistryNode> expected = {{L"a key", Removal::own, {text(L"value", L"text and text")}, {}}};
  EXPECT_EQ(parse_registry_script(L"HKCR { 'a %K%' { val %V% = s '%T% and %T%' } }", replacements), expected);
}

TEST(RegistryScript, ReplacementWithoutTextLeavesNothing) {
  EXPECT_EQ(default_text(L"HKCR { A = s '<%E%>' }", {{L"E", L""}}), L"<>");
}

TEST(RegistryScript, ReplacedTextIsNeverSyntax) {
  const std::wstring odd = L"C:\\it's {here}\\%APPID% = 'x'\\\u89c4\u5219 d.dll";
  EXPECT_EQ(default_text(L"HKCR { A = s '%MODULE%' { } }", {{L"MODULE", odd}, {L"APPID", L"wrong"}}), odd);
}

TEST(RegistryScript, ReplacedNumberIsChecked) {
  EXPECT_EQ(parse_registry_script(L"HKCR { A = d %N% }", {{L"N", L"42"}}).at(0).values.at(0).number, 42u);
  EXPECT_THROW(parse_registry_script(L"HKCR { A = d %N% }", {{L"N", L"many"}}), RegistryScriptError);
}

TEST(RegistryScript, KeyNamedByAnEmptyReplacementIsRefused) {
  EXPECT_THROW(parse_registry_script(L"HKCR { '%N%' = s 'x' }", {{L"N", L""}}), RegistryScriptError);
}

}  // namespace
}  // namespace platform
