#include <gmock/gmock.h>

#include "ApplicationTest.h"
#include "FirstContent.h"
#include "MessagePump.h"
#include "PasswordDialog.h"
#include "RecentStores.h"
#include "ScratchRoot.h"
#include "SqliteRuleStore.h"
#include "TemporaryFolder.h"
#include "Texts.h"
#include "UserSettings.h"

namespace workbench {
namespace {

using test_support::click;
using test_support::DialogDriver;

/// The program on the store in memory, and a file that its user opens instead.
class OpenStoreTest : public ApplicationTest {
 protected:
  OpenStoreTest() {
    create(path_, {{.name = L"SHFE copper"}, {.name = L"SHFE zinc"}}, {{.name = L"CU", .rule_name = L"SHFE copper"}});
    start();
    ShowWindow(window(), SW_SHOW);
  }

  /// Creates a store with the shipped calendars, so that none are offered when it is opened.
  static void create(const std::filesystem::path& path, const std::vector<Rule>& rules,
                     const std::vector<SymbolSourceSetting>& settings) {
    open_sqlite_store(path, {.first_content = {rules, settings, first_content().calendars}});
  }

  /// File > Open store..., and this file in its dialog, which is cancelled when it stays open. Message boxes are read
  /// and closed by `button`.
  void open(const std::wstring& file, int button = 0) {
    bool entered = false;
    const DialogDriver user(DialogDriver::When::shown, [&](HWND dialog, int) {
      if (!GetDlgItem(dialog, IDC_STORE_FILE)) {
        boxes_.push_back(test_support::read_message_box(dialog).text);
        if (button) {
          click(dialog, button);
        } else {
          test_support::close_message_box(dialog);
        }
      } else if (!std::exchange(entered, true)) {
        SetDlgItemTextW(dialog, IDC_STORE_FILE, file.c_str());
        click(dialog, IDOK);
      } else {
        click(dialog, IDCANCEL);
      }
    });
    press(IDM_OPEN_STORE);
    test_support::pump_messages();
  }

  /// What File > Recent stores shows.
  std::vector<std::wstring> recent_items() const {
    HMENU file = GetSubMenu(GetMenu(window()), 0);
    HMENU recent = nullptr;
    for (int item = 0; item < GetMenuItemCount(file) && !recent; ++item) recent = GetSubMenu(file, item);
    SendMessageW(window(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(recent), 0);
    std::vector<std::wstring> items;
    for (int item = 0; item < GetMenuItemCount(recent); ++item) {
      wchar_t caption[300] = L"";
      GetMenuStringW(recent, static_cast<UINT>(item), caption, static_cast<int>(std::size(caption)), MF_BYPOSITION);
      items.emplace_back(caption);
    }
    return items;
  }

  test_support::ScratchRoot user_{HKEY_CURRENT_USER};
  test_support::TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"rules.db";
  std::vector<std::wstring> boxes_;
};

TEST_F(OpenStoreTest, PanesAndStatusBarFollow) {
  open(path_.wstring());
  EXPECT_TRUE(boxes_.empty()) << boxes_.size();
  EXPECT_EQ(ListView_GetItemCount(rules()), 2);
  EXPECT_EQ(cell_text(rules(), 1, 1), L"SHFE zinc");
  EXPECT_EQ(cell_text(settings(), 0, 0), L"CU");
  EXPECT_EQ(status(1), text(IDS_RULE_COUNT, {L"2"}));
  EXPECT_EQ(status(2), text(IDS_STORE_PART, {path_.wstring()}));
}

TEST_F(OpenStoreTest, TwoStoresAreNotCompared) {
  const std::vector<SymbolSourceSetting> settings{{.name = L"S", .rule_name = L"r", .calendar = L"china-futures"}};
  const auto is_comparing = [&] {
    HWND pane = GetDlgItem(window(), IDC_SCHEDULE_PANE);
    return (GetWindowLongW(GetDlgItem(pane, IDC_DISMISS), GWL_STYLE) & WS_VISIBLE) != 0;
  };
  const std::filesystem::path first = folder_.path() / L"first.db";
  create(first, {{.name = L"r", .day_of_month = 10}}, settings);
  open(first.wstring());
  open_sqlite_store(first)->update_rule(1, {.name = L"r", .day_of_month = 15});
  SendMessageW(window(), WM_TIMER, 1, 0);
  test_support::pump_messages();
  EXPECT_TRUE(is_comparing()) << "the dates of one store are compared";
  press(IDM_DISMISS);
  const std::filesystem::path other = folder_.path() / L"other.db";
  create(other, {{.name = L"r", .day_of_month = 20}}, settings);
  open(other.wstring());
  EXPECT_FALSE(is_comparing());
}

TEST_F(OpenStoreTest, PaneFollowsChangesOfTheNewStoreOnly) {
  open(path_.wstring());
  open_sqlite_store(path_)->add_rule({.name = L"SHFE lead"});
  SendMessageW(window(), WM_TIMER, 1, 0);
  store_->add_rule({.name = L"CSI 500"});
  test_support::pump_messages();
  EXPECT_EQ(ListView_GetItemCount(rules()), 3);
  EXPECT_EQ(cell_text(rules(), 2, 1), L"SHFE lead");
}

TEST_F(OpenStoreTest, PluginWorksOnTheNewStoreAndHasItsCommandsOnce) {
  application_->load_plugin(real_module());
  open(path_.wstring());
  ASSERT_EQ(GetMenuItemCount(GetMenu(window())), static_cast<int>(own_menus) + 1);
  EXPECT_EQ(GetMenuItemCount(GetSubMenu(GetMenu(window()), own_menus - 1)), 1);
  EXPECT_EQ(store_.use_count(), 1) << "an object still holds the previous store";
  int listed = 0;
  const DialogDriver user([&](HWND dialog) {
    constexpr int rules_list = 201;
    listed = ListView_GetItemCount(GetDlgItem(dialog, rules_list));
    click(dialog, IDCANCEL);
  });
  pick_plugin_command();
  EXPECT_EQ(listed, 2);
}

TEST_F(OpenStoreTest, RefusedStoreLeavesThePresentOneOpen) {
  test_support::write_bytes(path_, "no store at all, but some text that is long enough");
  open(path_.wstring());
  ASSERT_EQ(boxes_.size(), 1u);
  EXPECT_NE(boxes_[0].find(path_.wstring()), std::wstring::npos);
  EXPECT_EQ(cell_text(rules(), 0, 1), L"CSI 300");
  EXPECT_EQ(status(2), L"规则库：C:\\rules.db");
  EXPECT_TRUE(recent_stores().empty());
  open(L"odbc:Server=db;Pwd={x");
  EXPECT_EQ(boxes_.size(), 2u);
  open(L"");
  EXPECT_EQ(boxes_.back(), text(IDS_NO_STORE_ENTERED));
}

TEST_F(OpenStoreTest, StoreIsCreatedWhenTheUserWantsIt) {
  const std::filesystem::path missing = folder_.path() / L"new.db";
  open(missing.wstring(), IDNO);
  ASSERT_EQ(boxes_.size(), 1u);
  EXPECT_EQ(boxes_[0], text(IDS_CREATE_STORE, {missing.wstring()}));
  EXPECT_FALSE(std::filesystem::exists(missing));
  EXPECT_EQ(ListView_GetItemCount(rules()), 1);
  open(missing.wstring(), IDYES);
  EXPECT_TRUE(std::filesystem::exists(missing));
  EXPECT_GT(ListView_GetItemCount(rules()), 30);
}

TEST_F(OpenStoreTest, NothingIsOpenedUnderADialog) {
  application_->load_plugin(real_module());
  std::wstring while_open;
  const DialogDriver user([&](HWND dialog) {
    press(IDM_OPEN_STORE);
    while_open = message();
    click(dialog, IDCANCEL);
  });
  press(IDM_OPEN_RULE);
  EXPECT_EQ(while_open, text(IDS_BUSY));
}

TEST_F(OpenStoreTest, RecentStoresAreOfferedTheLastOneFirst) {
  EXPECT_EQ(recent_items(), std::vector<std::wstring>{text(IDS_NO_RECENT_STORE)});
  const std::filesystem::path other = folder_.path() / L"R&D.db";
  create(other, {{.name = L"only"}}, {});
  open(path_.wstring());
  open(other.wstring());
  open(path_.wstring());
  open(other.wstring());
  EXPECT_EQ(recent_items(),
            (std::vector<std::wstring>{L"&1 " + folder_.path().wstring() + L"\\R&&D.db", L"&2 " + path_.wstring()}));
  press(IDM_FIRST_RECENT_STORE + 1);
  EXPECT_EQ(cell_text(rules(), 0, 1), L"SHFE copper");
  EXPECT_EQ(recent_stores().front(), path_.wstring());
}

TEST_F(OpenStoreTest, OnlySomeRecentStoresAreKept) {
  for (int i = 0; i < 20; ++i) remember_store(L"C:\\" + std::to_wstring(i) + L".db");
  EXPECT_EQ(recent_stores().size(), 8u);
  EXPECT_EQ(recent_stores().front(), L"C:\\19.db");
  EXPECT_EQ(recent_items().size(), 8u);
}

TEST_F(OpenStoreTest, FieldsOfAServerBecomeAConnectionString) {
  const std::wstring name = server_name({.server = L"db", .port = L"", .database = L"a;b}c", .user = L"{anna"});
  EXPECT_EQ(name, L"odbc:Server=db;Database={a;b}}c};Uid={{anna};");
  EXPECT_EQ(find_store(name)->description(), L"{anna@db/a;b}c");
  EXPECT_EQ(server_name({L"db", L"5433", L"rules", L""}), L"odbc:Server=db;Port=5433;Database=rules;");
}

TEST_F(OpenStoreTest, FieldsFollowTheKindOfStore) {
  const DialogDriver user([&](HWND dialog) {
    const auto is_enabled = [&](int id) { return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE; };
    EXPECT_TRUE(is_enabled(IDC_STORE_FILE));
    EXPECT_FALSE(is_enabled(IDC_STORE_SERVER));
    click(dialog, IDC_STORE_IS_SERVER);
    EXPECT_FALSE(is_enabled(IDC_STORE_FILE));
    EXPECT_TRUE(is_enabled(IDC_STORE_USER));
    click(dialog, IDCANCEL);
  });
  press(IDM_OPEN_STORE);
}

TEST(PasswordDialog, HidesAndReturnsWhatIsEntered) {
  std::wstring question;
  std::optional<EnteredPassword> entered;
  {
    const DialogDriver user([&](HWND dialog) {
      question = test_support::item_text(dialog, IDC_PASSWORD_MESSAGE);
      EXPECT_TRUE(GetWindowLongW(GetDlgItem(dialog, IDC_PASSWORD), GWL_STYLE) & ES_PASSWORD);
      EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_REMEMBER_PASSWORD), static_cast<UINT>(BST_UNCHECKED));
      SetDlgItemTextW(dialog, IDC_PASSWORD, L"secret");
      click(dialog, IDC_REMEMBER_PASSWORD);
      click(dialog, IDOK);
    });
    entered = ask_in_dialog(nullptr, {.store = L"anna@db/rules"});
  }
  EXPECT_EQ(question, text(IDS_PASSWORD_QUESTION, {L"anna@db/rules"}));
  ASSERT_TRUE(entered);
  EXPECT_EQ(entered->password, L"secret");
  EXPECT_TRUE(entered->remember);
  const DialogDriver user([&](HWND dialog) {
    question = test_support::item_text(dialog, IDC_PASSWORD_MESSAGE);
    EXPECT_EQ(IsDlgButtonChecked(dialog, IDC_REMEMBER_PASSWORD), static_cast<UINT>(BST_CHECKED));
    click(dialog, IDCANCEL);
  });
  EXPECT_FALSE(ask_in_dialog(nullptr, {.store = L"x", .refusal = L"refused", .remembered = true}));
  EXPECT_EQ(question, L"refused");
}

}  // namespace
}  // namespace workbench
