#include "UiLanguage.h"

#include <optional>

#include "ModulePath.h"

namespace workbench {

namespace {

std::optional<Language> chosen;

LANGID resource_language(Language language) {
  return language == Language::chinese ? MAKELANGID(LANG_CHINESE, SUBLANG_CHINESE_SIMPLIFIED)
                                       : MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
}

}  // namespace

Language system_language() noexcept {
  return PRIMARYLANGID(GetUserDefaultUILanguage()) == LANG_CHINESE ? Language::chinese : Language::english;
}

void choose_language(Language language) noexcept { chosen = language; }

Language chosen_language() noexcept {
  if (!chosen) chosen = system_language();
  return *chosen;
}

const void* find_resource(const wchar_t* type, UINT id, Language language) noexcept {
  HMODULE module = base::module_instance();
  HRSRC resource = FindResourceExW(module, type, MAKEINTRESOURCEW(id), resource_language(language));
  return resource ? LockResource(LoadResource(module, resource)) : nullptr;
}

HMENU load_menu(UINT id) noexcept {
  const void* menu = find_resource(RT_MENU, id, chosen_language());
  return menu ? LoadMenuIndirectW(menu) : nullptr;
}

const DLGTEMPLATE* find_dialog(UINT id) noexcept {
  return static_cast<const DLGTEMPLATE*>(find_resource(RT_DIALOG, id, chosen_language()));
}

}  // namespace workbench
