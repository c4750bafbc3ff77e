#include <gtest/gtest.h>

#include "MainMenu.h"
#include "Owned.h"
#include "References.h"
#include "StandInPlugin.h"

namespace workbench {
namespace {

const _bstr_t caption = L"规则(&R)";
const _bstr_t hint = L"到期规则";

std::wstring text_at(HMENU menu, int position) {
  wchar_t text[64] = L"";
  GetMenuStringW(menu, static_cast<UINT>(position), text, static_cast<int>(std::size(text)), MF_BYPOSITION);
  return text;
}

/// A menu bar of the items "File" and "Help"; plug-ins add their menus between them.
class MainMenuTest : public testing::Test {
 protected:
  MainMenuTest() {
    AppendMenuW(bar_.get(), MF_POPUP, reinterpret_cast<UINT_PTR>(CreatePopupMenu()), L"File");
    AppendMenuW(bar_.get(), MF_STRING, 1, L"Help");
    menu_ = std::make_shared<MainMenu>(bar_.get(), 1, targets_, [this] { ++changes_; });
    dispatch_ = base::own(menu_->create_dispatch());
  }

  base::ComPtr<IkvSubMenu> add_submenu() {
    base::ComPtr<IkvSubMenu> submenu;
    EXPECT_EQ(dispatch_->AddSubMenu(caption, hint, 1, &submenu), S_OK);
    return submenu;
  }

  base::ComPtr<IkvMenuItem> add_command(IkvSubMenu& submenu) {
    base::ComPtr<IkvMenuItem> item;
    EXPECT_EQ(submenu.AddCommand(_bstr_t(L"列表..."), 0, 0, 0, nullptr, 3, plugin_, &item), S_OK);
    return item;
  }

  base::Menu bar_{CreateMenu()};
  CommandTargets targets_;
  int changes_ = 0;
  std::shared_ptr<MainMenu> menu_;
  base::ComPtr<IkvMainMenu> dispatch_;
  StandInPlugin* const plugin_ = new StandInPlugin;
  const base::ComPtr<IkvPlugin> plugin_owner_ = base::own<IkvPlugin>(plugin_);
};

TEST_F(MainMenuTest, SubmenusOfTheHostAndAddedOnesAreFoundByTheirCaptionsAndWhatIsMissingIsNoFailure) {
  const auto is_found = [&](const _bstr_t& wanted) {
    base::ComPtr<IkvSubMenu> submenu;
    EXPECT_EQ(dispatch_->FindSubMenu(wanted, &submenu), S_OK);
    return static_cast<bool>(submenu);
  };
  EXPECT_TRUE(is_found(L"File"));
  EXPECT_FALSE(is_found(L"Help")) << "it is a command";
  EXPECT_FALSE(is_found(caption));
  add_submenu();
  EXPECT_TRUE(is_found(caption));
}

TEST_F(MainMenuTest, AddedSubmenuStandsBeforeTheTrailingItems) {
  add_submenu();
  EXPECT_EQ(text_at(bar_.get(), 0), L"File");
  EXPECT_EQ(text_at(bar_.get(), 1), std::wstring(caption));
  EXPECT_EQ(text_at(bar_.get(), 2), L"Help");
  EXPECT_EQ(changes_, 1);
}

TEST_F(MainMenuTest, HintOfASubmenuIsKept) {
  add_submenu();
  EXPECT_EQ(menu_->hint(GetSubMenu(bar_.get(), 1)), std::wstring(hint));
  EXPECT_EQ(menu_->hint(GetSubMenu(bar_.get(), 0)), L"");
}

TEST_F(MainMenuTest, NullCaptionAndHintAreEmptyTexts) {
  base::ComPtr<IkvSubMenu> submenu;
  EXPECT_EQ(dispatch_->AddSubMenu(nullptr, nullptr, 1, &submenu), S_OK);
  EXPECT_TRUE(submenu);
  EXPECT_EQ(text_at(bar_.get(), 1), L"");
}

TEST_F(MainMenuTest, CommandStandsInTheMenuWithItsId) {
  const auto submenu = add_submenu();
  const auto item = add_command(*submenu.GetInterfacePtr());
  long id = 0;
  EXPECT_EQ(item->get_CommandID(&id), S_OK);
  HMENU popup = GetSubMenu(bar_.get(), 1);
  EXPECT_EQ(GetMenuItemCount(popup), 1);
  EXPECT_EQ(text_at(popup, 0), L"列表...");
  EXPECT_EQ(GetMenuItemID(popup, 0), static_cast<UINT>(id));
}

TEST_F(MainMenuTest, CommandsIdLeadsToItsTarget) {
  const auto submenu = add_submenu();
  const auto item = add_command(*submenu.GetInterfacePtr());
  long id = 0;
  item->get_CommandID(&id);
  EXPECT_EQ(targets_.run(id), S_OK);
  EXPECT_EQ(plugin_->commands, std::vector<long>{id});
}

TEST_F(MainMenuTest, CommandWithoutTargetIsRefused) {
  const auto submenu = add_submenu();
  IkvMenuItem* item = reinterpret_cast<IkvMenuItem*>(1);
  EXPECT_EQ(submenu->AddCommand(caption, 0, 0, 0, nullptr, 3, nullptr, &item), E_INVALIDARG);
  EXPECT_EQ(item, nullptr);
}

TEST_F(MainMenuTest, NullOutPointersAreRefused) {
  const auto submenu = add_submenu();
  const auto item = add_command(*submenu.GetInterfacePtr());
  EXPECT_EQ(dispatch_->FindSubMenu(caption, nullptr), E_POINTER);
  EXPECT_EQ(dispatch_->AddSubMenu(caption, hint, 1, nullptr), E_POINTER);
  EXPECT_EQ(submenu->AddCommand(caption, 0, 0, 0, nullptr, 3, plugin_, nullptr), E_POINTER);
  EXPECT_EQ(item->get_CommandID(nullptr), E_POINTER);
}

TEST_F(MainMenuTest, FailedCommandLeavesNoTargetBehind) {
  const auto submenu = add_submenu();
  DeleteMenu(bar_.get(), 1, MF_BYPOSITION);
  const ULONG before = test_support::references(plugin_);
  base::ComPtr<IkvMenuItem> item;
  EXPECT_LT(submenu->AddCommand(caption, 0, 0, 0, nullptr, 3, plugin_, &item), 0);
  EXPECT_FALSE(item);
  EXPECT_EQ(test_support::references(plugin_), before);
}

TEST_F(MainMenuTest, ObjectsOutliveTheMenuDisconnected) {
  const auto submenu = add_submenu();
  const auto item = add_command(*submenu.GetInterfacePtr());
  menu_.reset();
  long id = 0;
  base::ComPtr<IkvSubMenu> other;
  base::ComPtr<IkvMenuItem> other_item;
  EXPECT_EQ(dispatch_->FindSubMenu(caption, &other), RPC_E_DISCONNECTED);
  EXPECT_EQ(dispatch_->AddSubMenu(caption, hint, 1, &other), RPC_E_DISCONNECTED);
  EXPECT_EQ(submenu->AddCommand(caption, 0, 0, 0, nullptr, 3, plugin_, &other_item), RPC_E_DISCONNECTED);
  EXPECT_EQ(item->get_CommandID(&id), S_OK);
}

TEST_F(MainMenuTest, EveryObjectIsDestroyedAfterItsLastRelease) {
  const long before = live_dispatch_objects;
  {
    const auto submenu = add_submenu();
    const auto item = add_command(*submenu.GetInterfacePtr());
    EXPECT_EQ(live_dispatch_objects, before + 2);
  }
  EXPECT_EQ(live_dispatch_objects, before);
}

TEST_F(MainMenuTest, InterfacesAreFoundThroughDispatchAndBack) {
  const base::ComPtr<IDispatch> dispatch = dispatch_;
  const base::ComPtr<IkvMainMenu> menu = dispatch;
  const base::ComPtr<IkvSubMenu> no_submenu = dispatch;
  EXPECT_TRUE(menu);
  EXPECT_FALSE(no_submenu);
  EXPECT_EQ(dispatch->QueryInterface(__uuidof(IUnknown), nullptr), E_POINTER);
}

}  // namespace
}  // namespace workbench
