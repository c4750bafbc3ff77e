#include "StoreError.h"

namespace workbench {

StoreError rule_not_found(long number) {
  return {StoreErrorKind::not_found, std::to_wstring(number), "there is no rule " + std::to_string(number)};
}

StoreError rule_changed(const std::wstring& name) {
  return {StoreErrorKind::changed, name, "the rule was changed since it was read"};
}

StoreError rule_in_use(const std::wstring& name) {
  return {StoreErrorKind::in_use, name, "a symbol source setting uses the rule"};
}

StoreError duplicate_rule_name(const std::wstring& name) {
  return {StoreErrorKind::duplicate_name, name, "another rule has this name"};
}

StoreError setting_not_found(long number) {
  return {StoreErrorKind::setting_not_found, std::to_wstring(number), "there is no setting " + std::to_string(number)};
}

StoreError setting_changed(const std::wstring& name) {
  return {StoreErrorKind::setting_changed, name, "the setting was changed since it was read"};
}

}  // namespace workbench
