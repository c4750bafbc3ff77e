#include "ApplicationTest.h"
#include "MessagePump.h"
#include "SqliteRuleStore.h"
#include "StoreWriter.h"
#include "TemporaryFolder.h"

namespace workbench {
namespace {

using test_support::click;
using test_support::DialogDriver;
using test_support::TemporaryFolder;

/// The program on a file that another host uses too. Its user opens the only rule in the editor and saves it.
class TwoHostsTest : public ApplicationTest {
 protected:
  TwoHostsTest() {
    StoreContent content;
    content.rules.push_back({.name = L"CSI 300", .roll_offset = 5, .day_of_month = 15});
    shared_ = open_sqlite_store(path_, {content, std::chrono::milliseconds(200)});
    start(shared_);
    application_->load_plugin(real_module());
    ShowWindow(window(), SW_SHOW);
  }

  std::wstring arguments(const std::wstring& rest) const { return L'"' + path_.native() + L"\" " + rest; }

  std::wstring stored_name() const { return shared_->try_load_rule(1)->rule.name; }

  TemporaryFolder folder_;
  std::filesystem::path path_ = folder_.path() / L"rules.db";
  std::shared_ptr<RuleStore> shared_;
};

TEST_F(TwoHostsTest, WhoMustWaitTooLongReadsWhyAndKeepsWhatHeEntered) {
  std::optional<StoreWriter> other;
  save_rule_as(L"CSI 500", [&] {
    other.emplace(arguments(L"hold 0"));
    EXPECT_TRUE(other->next_acknowledged());
  });
  std::wstring said = text_of_next_box();
  std::erase(said, L'\r');
  EXPECT_EQ(
      said,
      L"规则没有保存。\n\n“" + path_.native() +
          L"”正被另一个程序占用，请稍后再试。\n\n原有的数据保持不变。您输入的内容是：\n\n名称：CSI 500\n"
          L"换月：提前 5 个交易日\n指定日：当月第 15 天\n闭市顺延：不顺延\n\n按 Ctrl+C 可复制本消息，以便重新输入。");
  EXPECT_NE(message().find(L"占用"), std::wstring::npos);
  EXPECT_EQ(stored_name(), L"CSI 300");
}

TEST_F(TwoHostsTest, RuleThatWasChangedBehindTheQuestionIsNotDeleted) {
  constexpr int rules_list = 201;
  constexpr int delete_button = 204;
  std::vector<std::wstring> boxes;
  const DialogDriver user(DialogDriver::When::shown, [&](HWND dialog, int) {
    HWND list = GetDlgItem(dialog, rules_list);
    if (list && !boxes.empty()) {
      click(dialog, IDCANCEL);
    } else if (list) {
      ListView_SetItemState(list, 0, LVIS_SELECTED, LVIS_SELECTED);
      click(dialog, delete_button);
    } else {
      boxes.push_back(test_support::read_message_box(dialog).text);
      const bool is_question = boxes.size() == 1;
      EXPECT_TRUE(!is_question || StoreWriter(arguments(L"rename 1 theirs")).exit_code() == 0u);
      test_support::close_message_box(dialog);
    }
  });
  pick_plugin_command();
  test_support::pump_messages();
  ASSERT_FALSE(boxes.empty());
  EXPECT_NE(boxes.front().find(L"CSI 300"), std::wstring::npos);
  EXPECT_NE(message().find(L"已被另一个程序修改"), std::wstring::npos);
  EXPECT_EQ(stored_name(), L"theirs");
}

}  // namespace
}  // namespace workbench
