#pragma once

#include <windows.h>

#include "Mistakes.h"

namespace workbench {

using schedule::Language;

/// The language of the user's system if the program has texts in it, else English.
Language system_language() noexcept;

/// Chooses the language of the program's own menus, dialogs and messages. Called once, before the first window; without
/// a call it is that of the system.
void choose_language(Language language) noexcept;
Language chosen_language() noexcept;

/// The data of a resource of this program in this language; null when there is none.
const void* find_resource(const wchar_t* type, UINT id, Language language) noexcept;

/// The menu with this id in the chosen language; null when the system refuses. It belongs to the caller.
HMENU load_menu(UINT id) noexcept;

/// The template of the dialog with this id in the chosen language; null when there is none.
const DLGTEMPLATE* find_dialog(UINT id) noexcept;

}  // namespace workbench
