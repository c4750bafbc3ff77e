#include <windows.h>
#include <commctrl.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "Controls.h"
#include "ModulePath.h"
#include "Owned.h"
#include "OwnedWindow.h"
#include "Texts.h"
#include "UiLanguage.h"
#include "WindowText.h"
#include "resource.h"

namespace workbench {
namespace {

constexpr UINT first_text = IDS_TITLE;
constexpr UINT last_text = 1999;

std::wstring text_in(Language language, UINT id) {
  choose_language(language);
  return text(id);
}

/// The inserts of a text in ascending order, each as often as it stands there.
std::wstring inserts_of(const std::wstring& text) {
  std::wstring inserts;
  for (size_t at = text.find(L'%'); at != std::wstring::npos; at = text.find(L'%', at + 1)) inserts += text.at(at + 1);
  std::ranges::sort(inserts);
  return inserts;
}

TEST(UiLanguage, EveryTextIsThereInBothLanguagesWithTheSameInserts) {
  int texts = 0;
  for (UINT id = first_text; id <= last_text; ++id) {
    const std::wstring chinese = text_in(Language::chinese, id);
    const std::wstring english = text_in(Language::english, id);
    EXPECT_EQ(chinese.empty(), english.empty()) << id;
    EXPECT_EQ(inserts_of(chinese), inserts_of(english)) << id;
    texts += chinese.empty() ? 0 : 1;
  }
  EXPECT_GT(texts, 60);
}

TEST(UiLanguage, TextsFollowTheChoice) {
  EXPECT_EQ(text_in(Language::english, IDS_REFRESHED), L"Refreshed");
  EXPECT_EQ(text_in(Language::chinese, IDS_REFRESHED), L"已刷新");
}

/// The commands of a menu and of the menus below it, and the accelerator letters of the menu itself.
void collect(HMENU menu, std::vector<UINT>& commands) {
  for (int item = 0; item < GetMenuItemCount(menu); ++item) {
    if (HMENU submenu = GetSubMenu(menu, item)) {
      collect(submenu, commands);
    } else {
      commands.push_back(GetMenuItemID(menu, item));
    }
  }
}

TEST(UiLanguage, MenusHoldTheSameCommands) {
  std::vector<UINT> commands[2];
  for (const Language language : {Language::english, Language::chinese}) {
    choose_language(language);
    const base::Menu menu(load_menu(IDR_MAIN_MENU));
    ASSERT_TRUE(menu);
    collect(menu.get(), commands[static_cast<int>(language)]);
  }
  EXPECT_EQ(commands[0], commands[1]);
  EXPECT_FALSE(commands[0].empty());
}

TEST(UiLanguage, NoTwoItemsOfAMenuHaveTheSameLetter) {
  for (const Language language : {Language::english, Language::chinese}) {
    choose_language(language);
    const base::Menu bar(load_menu(IDR_MAIN_MENU));
    std::vector<HMENU> menus{bar.get()};
    for (int item = 0; item < GetMenuItemCount(bar.get()); ++item) menus.push_back(GetSubMenu(bar.get(), item));
    for (HMENU menu : menus) {
      std::wstring letters;
      for (int item = 0; item < GetMenuItemCount(menu); ++item) {
        wchar_t caption[100] = L"";
        GetMenuStringW(menu, static_cast<UINT>(item), caption, static_cast<int>(std::size(caption)), MF_BYPOSITION);
        const std::wstring name = caption;
        if (const size_t at = name.find(L'&'); at != std::wstring::npos) letters += name.at(at + 1);
      }
      std::ranges::sort(letters);
      EXPECT_EQ(std::ranges::adjacent_find(letters), letters.end()) << static_cast<int>(language);
    }
  }
}

INT_PTR CALLBACK do_nothing(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

/// A dialog of the program that is never shown.
class HiddenDialog {
 public:
  explicit HiddenDialog(UINT id)
      : window_(CreateDialogIndirectParamW(base::module_instance(), find_dialog(id), nullptr, &do_nothing, 0)) {}

  std::vector<HWND> controls() const {
    std::vector<HWND> controls;
    for (HWND child = GetWindow(window_.get(), GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT))
      controls.push_back(child);
    return controls;
  }

 private:
  test_support::OwnedWindow window_;
};

/// The width that a control's text takes, with the box of a check box.
LONG needed_width(HWND control) {
  const std::wstring text = base::window_text(control);
  const base::MemoryDc dc(CreateCompatibleDC(nullptr));
  SelectObject(dc.get(), reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)));
  RECT needed{};
  DrawTextW(dc.get(), text.c_str(), -1, &needed, DT_CALCRECT | DT_SINGLELINE);
  const bool check_box = SendMessageW(control, WM_GETDLGCODE, 0, 0) == DLGC_BUTTON;
  return needed.right + (check_box ? GetSystemMetrics(SM_CXMENUCHECK) : 0);
}

bool shows_text(HWND control) {
  wchar_t class_name[20] = L"";
  GetClassNameW(control, class_name, static_cast<int>(std::size(class_name)));
  return std::wstring(class_name) == L"Static" || std::wstring(class_name) == L"Button";
}

TEST(UiLanguage, DialogsHoldTheSameControlsAndTheirTextsFit) {
  const INITCOMMONCONTROLSEX classes{sizeof(classes), ICC_PROGRESS_CLASS};
  InitCommonControlsEx(&classes);
  for (const UINT id : {IDD_SETTING, IDD_CHECK, IDD_FIND, IDD_PROGRESS, IDD_CALENDAR}) {
    std::vector<int> ids[2];
    for (const Language language : {Language::english, Language::chinese}) {
      choose_language(language);
      const HiddenDialog dialog(id);
      ASSERT_FALSE(dialog.controls().empty()) << id;
      for (HWND control : dialog.controls()) {
        ids[static_cast<int>(language)].push_back(GetDlgCtrlID(control));
        RECT client{};
        GetClientRect(control, &client);
        if (shows_text(control)) {
          EXPECT_LE(needed_width(control), client.right)
              << id << ' ' << GetDlgCtrlID(control) << ' ' << static_cast<int>(language);
        }
      }
    }
    EXPECT_EQ(ids[0], ids[1]) << id;
  }
}

TEST(UiLanguage, MissingResourceIsNull) {
  EXPECT_EQ(find_resource(RT_STRING, 9999, Language::english), nullptr);
  EXPECT_EQ(find_dialog(9999), nullptr);
  EXPECT_EQ(load_menu(9999), nullptr);
}

}  // namespace
}  // namespace workbench
