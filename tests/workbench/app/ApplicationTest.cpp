#include "ApplicationTest.h"

#include "DispatchObject.h"
#include "FailingRuleStore.h"
#include "HostStorage.h"
#include "MessagePump.h"
#include "Texts.h"
#include "WindowText.h"

namespace workbench {
namespace {

using test_support::click;
using test_support::DialogDriver;

TEST_F(ApplicationTest, ShowsWhatTheStoreHolds) {
  start();
  EXPECT_EQ(cell_text(rules(), 0, 1), L"CSI 300");
  EXPECT_EQ(cell_text(settings(), 0, 1), L"CSI 300");
  EXPECT_EQ(status(1), L"1 条规则");
  EXPECT_EQ(status(2), L"规则库：C:\\rules.db");
}

TEST_F(ApplicationTest, PanesFollowAChangeOfTheStore) {
  start();
  store_->add_rule({.name = L"SHFE copper"});
  store_->replace_settings({{L"CU.SHFE", L"gone"}});
  test_support::pump_messages();
  EXPECT_EQ(cell_text(rules(), 1, 1), L"SHFE copper");
  EXPECT_EQ(cell_text(settings(), 0, 2), L"规则不存在");
  EXPECT_EQ(status(1), L"2 条规则");
}

TEST_F(ApplicationTest, PanesKeepTheirRowsWhenTheStoreCannotBeRead) {
  constexpr int first_load_of_a_refresh = 4;
  start(std::make_shared<FailingRuleStore>(store_, first_load_of_a_refresh, StoreErrorKind::locked));
  press(IDM_REFRESH);
  EXPECT_EQ(ListView_GetItemCount(rules()), 1);
  EXPECT_NE(message().find(L"占用"), std::wstring::npos) << "the reason must not be hidden by a message of success";
}

TEST_F(ApplicationTest, RefreshShowsTheStoreAnew) {
  start();
  press(IDM_REFRESH);
  EXPECT_EQ(message(), L"已刷新");
}

TEST_F(ApplicationTest, WithoutPluginARuleCannotBeOpened) {
  start();
  press(IDM_OPEN_RULE);
  EXPECT_EQ(message(), L"插件没有加载。");
}

TEST_F(ApplicationTest, UnknownCommandFailsInTheStatusBar) {
  start();
  application_->load_plugin(real_module());
  press(static_cast<UINT>(CommandTargets::last_id));
  EXPECT_NE(message().find(L"命令失败"), std::wstring::npos);
  EXPECT_NE(message().find(L"0x8002000B"), std::wstring::npos);
}

TEST_F(ApplicationTest, MissingModuleIsShownInABoxAndTheRulesStay) {
  start();
  application_->load_plugin(L"C:\\no such module.dll");
  EXPECT_NE(message().find(L"无法创建插件"), std::wstring::npos);
  EXPECT_NE(text_of_next_box().find(L"无法创建插件"), std::wstring::npos);
  EXPECT_EQ(ListView_GetItemCount(rules()), 1);
}

TEST_F(ApplicationTest, ModulePutsItsCommandBeforeTheLastMenu) {
  start();
  HMENU bar = GetMenu(window());
  ASSERT_EQ(GetMenuItemCount(bar), static_cast<int>(own_menus));
  application_->load_plugin(real_module());
  EXPECT_EQ(message(), L"插件已加载");
  ASSERT_EQ(GetMenuItemCount(bar), static_cast<int>(own_menus) + 1);
  EXPECT_EQ(GetMenuItemCount(GetSubMenu(bar, own_menus - 1)), 1);
}

TEST_F(ApplicationTest, ClosingLetsEverythingGo) {
  const long before = live_dispatch_objects;
  start();
  application_->load_plugin(real_module());
  EXPECT_TRUE(module_is_loaded());
  SendMessageW(window(), WM_CLOSE, 0, 0);
  application_.reset();
  EXPECT_EQ(live_dispatch_objects, before);
  EXPECT_FALSE(module_is_loaded());
  MSG quit{};
  EXPECT_TRUE(PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_F(ApplicationTest, PickedCommandOpensTheModulesDialog) {
  start();
  application_->load_plugin(real_module());
  std::wstring title;
  const DialogDriver user([&](HWND dialog) {
    title = base::window_text(dialog);
    click(dialog, IDCANCEL);
  });
  ShowWindow(window(), SW_SHOW);
  pick_plugin_command();
  EXPECT_EQ(title, L"到期规则");
}

TEST_F(ApplicationTest, WindowStaysOpenWhileADialogOfTheModuleIsOpen) {
  start();
  application_->load_plugin(real_module());
  std::wstring while_open;
  const DialogDriver user([&](HWND dialog) {
    SendMessageW(window(), WM_CLOSE, 0, 0);
    press(IDM_OPEN_RULE);
    while_open = message();
    click(dialog, IDCANCEL);
  });
  ShowWindow(window(), SW_SHOW);
  press(IDM_OPEN_RULE);
  EXPECT_TRUE(IsWindow(window()));
  EXPECT_EQ(while_open, text(IDS_BUSY));
}

TEST_F(ApplicationTest, ErrorWaitsForTheDialogThatIsOnItsWay) {
  constexpr int load_by_the_editor = 4;
  start(std::make_shared<FailingRuleStore>(store_, load_by_the_editor, StoreErrorKind::locked));
  application_->load_plugin(real_module());
  ShowWindow(window(), SW_SHOW);
  bool box_was_there = false;
  BOOL frame_was_enabled = TRUE;
  const DialogDriver user(DialogDriver::When::shown, [&](HWND dialog, int) {
    const bool is_editor = GetDlgItem(dialog, IDOK) && GetDlgItem(dialog, IDCANCEL);
    if (!is_editor) {
      box_was_there = true;
      test_support::close_message_box(dialog);
    } else if (box_was_there) {
      frame_was_enabled = IsWindowEnabled(window());
      click(dialog, IDCANCEL);
    }
  });
  press(IDM_OPEN_RULE);
  EXPECT_FALSE(frame_was_enabled);
}

/// Deletes a rule that no setting uses any more then.
void delete_by_another_program(RuleStore& store, long rule) {
  store.replace_settings({});
  store.delete_rule(rule);
}

/// Gives the rule in an editor a name and chooses the first of each list.
void fill_editor(HWND editor, const wchar_t* name) {
  SetWindowTextW(FindWindowExW(editor, nullptr, L"Edit", nullptr), name);
  for (HWND list = nullptr; (list = FindWindowExW(editor, list, L"ComboBox", nullptr));) {
    SendMessageW(list, CB_SETCURSEL, 0, 0);
  }
}

TEST_F(ApplicationTest, SavedRuleThatAnotherProgramHadDeletedIsSaidToBeAddedAnew) {
  start();
  application_->load_plugin(real_module());
  ShowWindow(window(), SW_SHOW);
  // The pane shows the rule until messages are dispatched.
  delete_by_another_program(*store_, 1);
  const DialogDriver user([&](HWND editor) {
    fill_editor(editor, L"CSI 500");
    click(editor, IDOK);
  });
  press(IDM_OPEN_RULE);
  ASSERT_EQ(store_->load_rules().size(), 1u);
  EXPECT_EQ(store_->load_rules()[0].rule.name, L"CSI 500");
  EXPECT_EQ(message(), L"该规则已被另一个程序删除，现已重新添加为“CSI 500”。");
  test_support::pump_messages();
  EXPECT_EQ(message(), text(IDS_RULE_RESTORED, {L"CSI 500"})) << "the panes follow without a message";
  press(IDM_REFRESH);
  EXPECT_EQ(message(), text(IDS_REFRESHED));
}

TEST_F(ApplicationTest, RuleThatAnotherProgramDeletedAndThatIsNotSavedIsNotMentioned) {
  start();
  application_->load_plugin(real_module());
  ShowWindow(window(), SW_SHOW);
  delete_by_another_program(*store_, 1);
  const DialogDriver user([&](HWND editor) { click(editor, IDCANCEL); });
  press(IDM_OPEN_RULE);
  EXPECT_TRUE(store_->load_rules().empty());
  EXPECT_EQ(message(), L"插件已加载");
}

/// A store that takes no change.
class ReadOnlyStoreTest : public ApplicationTest {
 protected:
  HRESULT save(const wchar_t* name) {
    base::ComPtr<IkvExpirationRuleService> service;
    service.CreateInstance(__uuidof(kvStorage), nullptr, CLSCTX_INPROC_SERVER);
    return service->update_rule(1, _bstr_t(name), 0, 0, 0, 1, 1, 1, 1, 1, 0);
  }
};

TEST_F(ReadOnlyStoreTest, FailedSaveIsShownAtOnceInTheStatusBarAndSoonInABox) {
  constexpr int save_after_the_first_three_loads = 4;
  start(std::make_shared<FailingRuleStore>(store_, save_after_the_first_three_loads, StoreErrorKind::read_only));
  EXPECT_LT(save(L"new name"), 0);
  EXPECT_NE(message().find(L"只读"), std::wstring::npos);
  EXPECT_EQ(GetLastActivePopup(window()), window()) << "nothing may block in the middle of a call";

  EXPECT_NE(text_of_next_box().find(L"原有的数据保持不变"), std::wstring::npos);
  EXPECT_EQ(store_->load_rules()[0].rule.name, L"CSI 300");
}

}  // namespace
}  // namespace workbench
