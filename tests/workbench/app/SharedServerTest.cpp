#include "ApplicationTest.h"
#include "MemoryServer.h"
#include "ServerRuleStore.h"
#include "WaitBox.h"

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
    settings.api = &server_.api();
    return open_server_store(odbc::ConnectionString(L"Server=desk"), settings);
  }

  MemoryServer server_;
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

}  // namespace
}  // namespace workbench
