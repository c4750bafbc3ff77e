#include <atomic>
#include <thread>

#include "ApplicationTest.h"
#include "FaultyOdbc.h"
#include "MemoryServer.h"
#include "ServerRuleStore.h"
#include "WaitBox.h"
#include "WithinSeconds.h"

namespace workbench {
namespace {

/// The program on a server that another workbench uses too. Its user opens the only rule in the editor and saves it.
class SharedServerTest : public ApplicationTest {
 protected:
  SharedServerTest() {
    theirs_->add_rule({.name = L"CSI 300", .roll_offset = 5, .day_of_month = 15});
    start(open({.poll_interval = std::chrono::milliseconds(500),
                .create_wait = [] { return std::make_unique<WaitBox>(L"desk"); }}));
    application_->load_plugin(real_module());
    ShowWindow(window(), SW_SHOW);
  }
  ~SharedServerTest() override { application_.reset(); }

  std::unique_ptr<RuleStore> open(ServerStoreOptions settings = {}) const {
    settings.api = &odbc_.api();
    return open_server_store(odbc::ConnectionString(L"Server=desk"), settings);
  }

  /// A message that another program sends to a window and waits for.
  struct SentMessage {
    UINT message;
    WPARAM wparam;
    std::atomic<int> received = 0;

    static LRESULT CALLBACK count(HWND window, UINT message, WPARAM wparam, LPARAM lparam, UINT_PTR, DWORD_PTR data) {
      auto& sent = *reinterpret_cast<SentMessage*>(data);
      if (message == sent.message && wparam == sent.wparam && lparam == 0) ++sent.received;
      return DefSubclassProc(window, message, wparam, lparam);
    }
  };

  MemoryServer server_;
  test_support::FaultyOdbc odbc_{server_.api()};
  std::unique_ptr<RuleStore> theirs_ = open();
};

TEST_F(SharedServerTest, RuleThatNoOtherProgramChangedIsSaved) {
  save_rule_as(L"CSI 500");
  EXPECT_EQ(server_.names(), std::vector<std::wstring>{L"CSI 500"});
  EXPECT_EQ(theirs_->try_load_rule(1)->revision, 2);
}

TEST_F(SharedServerTest, WhoWasOvertakenReadsSoAndKeepsWhatHeEntered) {
  save_rule_as(L"CSI 500", [&] { theirs_->update_rule(1, {.name = L"theirs"}); });
  const std::wstring said = text_of_next_box();
  EXPECT_NE(said.find(L"规则“theirs”已被另一个程序修改，请刷新后重试。"), std::wstring::npos);
  EXPECT_NE(said.find(L"名称：CSI 500"), std::wstring::npos);
  EXPECT_NE(message().find(L"已被另一个程序修改"), std::wstring::npos);
  EXPECT_EQ(server_.names(), std::vector<std::wstring>{L"theirs"});
  // What was entered is not lost: the user saves it on top of what is there now.
  save_rule_as(L"CSI 500");
  EXPECT_EQ(server_.names(), std::vector<std::wstring>{L"CSI 500"});
}

TEST_F(SharedServerTest, WhatIsSentToTheEditorDoesNotReachItWhileItsSaveWaits) {
  SentMessage messages[] = {
      {WM_COMMAND, IDOK}, {WM_COMMAND, IDCANCEL}, {WM_CLOSE, 0}, {RegisterWindowMessageW(L"WMU_RESIZESUPPORT"), 0}};
  std::vector<std::jthread> senders;
  WaitBox::delay_ms = 50;
  save_rule_as(L"CSI 500", [&] {
    HWND editor = GetLastActivePopup(window());
    ASSERT_TRUE(GetDlgItem(editor, IDOK));
    odbc_.fail_call(1, "08S01", {.reaches = true, .is_silent = true});
    for (SentMessage& sent : messages) {
      SetWindowSubclass(editor, &SentMessage::count, sent.message + sent.wparam, reinterpret_cast<DWORD_PTR>(&sent));
      senders.emplace_back([&sent, editor] {
        test_support::within_seconds(10, [] { return shown_wait_box() != nullptr; });
        SendMessageW(editor, sent.message, sent.wparam, 0);
      });
    }
    senders.emplace_back([&] {
      EXPECT_TRUE(test_support::within_seconds(10, [] { return shown_wait_box() != nullptr; }));
      Sleep(500);
      for (const SentMessage& sent : messages) EXPECT_EQ(sent.received, 0) << "the plug-in is in its call";
      odbc_.end_silence();
    });
  });
  senders.clear();
  WaitBox::delay_ms = 1000;
  EXPECT_EQ(server_.names(), std::vector<std::wstring>{L"CSI 500"});
  EXPECT_EQ(server_.revision(1), 2) << "it is saved once";
  test_support::pump_messages();
  EXPECT_EQ(message(), L"插件已加载") << "nothing was refused";
}

}  // namespace
}  // namespace workbench
