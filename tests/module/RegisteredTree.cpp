#include "RegisteredTree.h"

#include <cwchar>

#include "GuidText.h"
#include "Module.h"

namespace module_test {

using test_support::guid_text;

test_support::RegistryTree registered_tree(const std::wstring& path) {
  const std::wstring app_id = guid_text(__uuidof(zdExpirationRulesAppID));
  const std::wstring class_id = guid_text(__uuidof(CzdExpirationRulePlugin));
  const std::wstring class_key = L"CLSID\\" + class_id;
  return {
      {L"AppID\\", L""},
      {L"AppID\\" + app_id + L"\\", L""},
      {L"AppID\\" + app_id + L"\\@", L"s:zdExpirationRules"},
      {L"AppID\\zdExpirationRules.DLL\\", L""},
      {L"AppID\\zdExpirationRules.DLL\\AppID", L"s:" + app_id},
      {L"zdExpirationRule.ExpirationRule.1\\", L""},
      {L"zdExpirationRule.ExpirationRule.1\\@", L"s:CzdExpirationRulePlugin Object"},
      {L"zdExpirationRule.ExpirationRule.1\\CLSID\\", L""},
      {L"zdExpirationRule.ExpirationRule.1\\CLSID\\@", L"s:" + class_id},
      {L"zdExpirationRule.ExpirationRule\\", L""},
      {L"zdExpirationRule.ExpirationRule\\@", L"s:CzdExpirationRulePlugin Object"},
      {L"zdExpirationRule.ExpirationRule\\CLSID\\", L""},
      {L"zdExpirationRule.ExpirationRule\\CLSID\\@", L"s:" + class_id},
      {L"zdExpirationRule.ExpirationRule\\CurVer\\", L""},
      {L"zdExpirationRule.ExpirationRule\\CurVer\\@", L"s:zdExpirationRule.ExpirationRule.1"},
      {L"CLSID\\", L""},
      {class_key + L"\\", L""},
      {class_key + L"\\@", L"s:CzdExpirationRulePlugin Object"},
      {class_key + L"\\AppID", L"s:" + app_id},
      {class_key + L"\\ProgID\\", L""},
      {class_key + L"\\ProgID\\@", L"s:zdExpirationRule.ExpirationRule.1"},
      {class_key + L"\\VersionIndependentProgID\\", L""},
      {class_key + L"\\VersionIndependentProgID\\@", L"s:zdExpirationRule.ExpirationRule"},
      {class_key + L"\\Programmable\\", L""},
      {class_key + L"\\InprocServer32\\", L""},
      {class_key + L"\\InprocServer32\\@", L"s:" + path},
      {class_key + L"\\InprocServer32\\ThreadingModel", L"s:apartment"},
      {class_key + L"\\TypeLib\\", L""},
      {class_key + L"\\TypeLib\\@", L"s:" + guid_text(LIBID_zdExpirationRules)},
  };
}

std::wstring type_library_key() { return L"TypeLib\\" + guid_text(LIBID_zdExpirationRules); }

test_support::RegistryTree without_type_library(const test_support::RegistryTree& tree) {
  test_support::RegistryTree rest;
  for (const auto& [name, value] : tree) {
    // The automation library is free in how it spells its keys.
    const bool is_of_library =
        _wcsnicmp(name.c_str(), L"TypeLib\\", 8) == 0 || _wcsnicmp(name.c_str(), L"Interface\\", 10) == 0;
    if (!is_of_library) rest[name] = value;
  }
  return rest;
}

}  // namespace module_test
