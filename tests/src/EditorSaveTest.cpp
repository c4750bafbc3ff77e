#include "EditorTest.h"
#include "Input.h"

namespace editor_test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class EditorSave : public EditorTest {
 protected:
  std::vector<std::string> saved() { return host.calls().all("IkvExpirationRuleService::update_rule"); }
  std::vector<std::string> added() { return host.calls().all("IkvExpirationRuleService::add_rule"); }

  /// Creates a new rule of this name and saves it. Returns the number by which the dialog knows it afterwards.
  long add(const std::wstring& name) {
    CEditExpirationRuleDialog dialog(&block, 0);
    INT_PTR result = 0;
    test_support::with_dialog([&] { result = dialog.DoModal(nullptr); },
                              [&](HWND window) {
                                const Editor editor(window, dialog);
                                editor.enter(IDC_NAME, name);
                                editor.ok();
                              });
    EXPECT_EQ(IDOK, result);
    return dialog.rule_id();
  }
};

TEST_F(EditorSave, RewritesTheWholeRuleInTheOrderOfTheRecord) {
  rule() = {stored_id, L"IF", 3, 1, 1, 15, 2, 4, 5, 0, 1};
  const HostRule before = rule();
  save_unchanged();
  EXPECT_THAT(saved(), ElementsAre("IkvExpirationRuleService::update_rule(5, \"IF\", 3, 1, 1, 15, 2, 4, 5, 0, 1)"));
  EXPECT_EQ(before, rule());
  EXPECT_THAT(added(), IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorSave, WritesWhatTheControlsHold) {
  EXPECT_EQ(IDOK, edit([](Editor& editor) {
              editor.enter(IDC_NAME, L"IF 2");
              editor.enter(IDC_OFFSET, L"12");
              editor.choose(IDC_DAY_OF_MONTH, 30);
              editor.choose(IDC_DAY_MONTH, 0);
              editor.press(IDC_WEEKDAY_MODE);
              editor.choose(IDC_WEEK_ORDINAL, 4);
              editor.choose(IDC_WEEKDAY, 6);
              editor.choose(IDC_WEEKDAY_MONTH, 2);
              editor.press(IDC_MOVE_TO_NEXT_TRADING_DAY);
              editor.ok();
            }));
  EXPECT_THAT(saved(), ElementsAre("IkvExpirationRuleService::update_rule(5, \"IF 2\", 12, 0, 1, 31, 0, 5, 6, 2, 1)"));
}

TEST_F(EditorSave, StoresBothDayGroupsInEitherMode) {
  rule() = {stored_id, L"IF", 0, 0, 1, 20, 2, 3, 4, 0, 0};
  save_unchanged();
  EXPECT_THAT(saved(), ElementsAre("IkvExpirationRuleService::update_rule(5, \"IF\", 0, 0, 1, 20, 2, 3, 4, 0, 0)"));
  EXPECT_EQ(IDOK, edit([](Editor& editor) {
              editor.press(IDC_DAY_OF_MONTH_MODE);
              editor.ok();
            }));
  EXPECT_EQ("IkvExpirationRuleService::update_rule(5, \"IF\", 0, 0, 0, 20, 2, 3, 4, 0, 0)", saved().back());
}

TEST_F(EditorSave, StoresMinusOneForAnEmptyChoice) {
  for (const long day_of_month : {0L, 32L}) {
    rule() = {stored_id, L"IF", 0, 7, 0, day_of_month, 3, 0, 7, -2, 0};
    host.calls().fail("IkvExpirationRuleService::update_rule", {S_OK});
    save_unchanged();
    EXPECT_EQ("IkvExpirationRuleService::update_rule(5, \"IF\", 0, -1, 0, -1, -1, -1, -1, -1, 0)", saved().back());
  }
}

TEST_F(EditorSave, StoresDayMode2AsTheWeekdayMode) {
  rule().day_mode = 2;
  save_unchanged();
  EXPECT_EQ(1, rule().day_mode);
}

TEST_F(EditorSave, StoresAFlagOf2AsClearUnlessItIsTicked) {
  rule().move_to_next_trading_day = 2;
  save_unchanged();
  EXPECT_EQ(0, rule().move_to_next_trading_day);
  rule().move_to_next_trading_day = 2;
  edit([](Editor& editor) {
    editor.press(IDC_MOVE_TO_NEXT_TRADING_DAY);
    editor.ok();
  });
  EXPECT_EQ(1, rule().move_to_next_trading_day);
}

TEST_F(EditorSave, AddsANewRuleWithTheDefaultsAndTheHostsDayMode) {
  for (const long host_mode : {0L, 1L}) {
    host.odd_values()[1080] = host_mode;
    const std::wstring name = L"new " + std::to_wstring(host_mode);
    add(name);
    EXPECT_EQ((HostRule{stored_id + 1 + host_mode, name, 0, 0, host_mode, 1, 1, 1, 1, 1, 0}), host.rules().back());
  }
  EXPECT_THAT(saved(), IsEmpty());
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorSave, ReturnsTheNumberOfTheAddedRule) {
  EXPECT_EQ(6, add(L"new"));
  EXPECT_THAT(added(), ElementsAre("IkvExpirationRuleService::add_rule(\"new\", 0, 0, 0, 1, 1, 1, 1, 1, 0)"));
  EXPECT_EQ(1u, host.calls().all("IkvField::SetLong(1025, 6)").size());
}

TEST_F(EditorSave, ReturnsZeroWhenTheHostGivesNoNumber) {
  host.calls().fail("IkvExpirationRuleService::add_rule", {S_OK, Fault::Out::untouched});
  EXPECT_EQ(0, add(L"new"));
}

TEST_F(EditorSave, ThatTheStoreRefusesToAddIsReportedAndClosesTheDialog) {
  host.calls().fail("IkvExpirationRuleService::add_rule", {E_ACCESSDENIED});
  EXPECT_EQ(0, add(L"new"));
  EXPECT_EQ(1u, host.rules().size());
  EXPECT_THAT(reports(), ElementsAre("ASSERT 80070005 | EditExpirationRuleDialog.cpp:* save_rule",
                                     "TRACE HRESULT - 80070005; FILE - EditExpirationRuleDialog.cpp, LINE - * | "
                                     "EditExpirationRuleDialog.cpp:* flush_data_to_database"));
  EXPECT_THAT(host.calls().all("IkvField::SetLong(1025"), IsEmpty()) << "the number stays unset";
}

TEST_F(EditorSave, ThatTheStoreRefusesIsReportedLeavesTheOldDataAndClosesTheDialog) {
  const HostRule before = rule();
  host.calls().fail("IkvExpirationRuleService::update_rule", {HRESULT_FROM_WIN32(ERROR_DISK_FULL)});
  EXPECT_EQ(IDOK, edit([](Editor& editor) {
              editor.enter(IDC_OFFSET, L"9");
              editor.ok();
            }));
  EXPECT_EQ(before, rule());
  EXPECT_THAT(reports(), ElementsAre("ASSERT 80070070 | EditExpirationRuleDialog.cpp:* save_rule",
                                     "TRACE HRESULT - 80070070; FILE - EditExpirationRuleDialog.cpp, LINE - * | "
                                     "EditExpirationRuleDialog.cpp:* flush_data_to_database"));
}

TEST_F(EditorSave, OtherSuccessesOfTheStorePass) {
  host.calls().fail("IkvExpirationRuleService::update_rule", {S_FALSE, Fault::Out::given});
  save_unchanged();
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorSave, WithoutARuleServiceIsReported) {
  EXPECT_EQ(IDOK, edit([this](Editor& editor) {
              block.rules = nullptr;
              editor.ok();
            }));
  EXPECT_THAT(reports(), ElementsAre("TRACE HRESULT - 80004003; FILE - EditExpirationRuleDialog.cpp, LINE - * | "
                                     "EditExpirationRuleDialog.cpp:* is_expiration_rule_name_not_unique",
                                     "TRACE HRESULT - 80004003; FILE - EditExpirationRuleDialog.cpp, LINE - * | "
                                     "EditExpirationRuleDialog.cpp:* flush_data_to_database"));
}

TEST_F(EditorSave, OfADeletedRuleAddsItAnew) {
  // Nothing is chosen in the editor of a rule without a row; this host takes it all the same.
  host.calls().fail("IkvExpirationRuleService::add_rule", {S_OK, Fault::Out::number, false, 9});
  EXPECT_EQ(IDOK, edit(77, [](Editor& editor) {
              editor.enter(IDC_NAME, L"back");
              editor.ok();
            }));
  const auto reported = reports();
  ASSERT_FALSE(reported.empty());
  EXPECT_EQ("ASSERT 8002000b | zdStorageGetFieldHelper.h:* SetField", reported.back()) << "no row takes the number";
  ASSERT_EQ(1u, added().size());
  EXPECT_EQ(L"back", host.saves().back().name);
}

TEST_F(EditorSave, RewritesTheRuleAlsoWhenItsNumberCannotBeReadASecondTime) {
  for (const Fault& fault : {Fault{E_FAIL}, Fault{RPC_E_DISCONNECTED}, Fault{S_OK}, Fault{S_OK, Fault::Out::null}}) {
    rule().roll_offset = 0;
    host.calls().fail("IkvField::GetLong(1025)", fault, 2);
    edit([](Editor& editor) {
      editor.enter(IDC_OFFSET, L"9");
      editor.ok();
    });
    EXPECT_EQ(9, rule().roll_offset);
    host.calls().clear_faults();
  }
  EXPECT_THAT(added(), IsEmpty());
  reports();
}

TEST_F(EditorSave, IsWhatTheEnterKeyDoes) {
  EXPECT_EQ(IDOK, edit([](Editor& editor) {
              editor.enter(IDC_OFFSET, L"9");
              test_support::press(VK_RETURN);
            }));
  EXPECT_EQ(9, rule().roll_offset);
}

TEST_F(EditorSave, IsNotWhatCancelTheEscapeKeyAndTheCloseBoxDo) {
  const auto before = host.rules();
  const std::function<void(Editor&)> ways_out[] = {
      [](Editor& editor) { editor.cancel(); },
      [](Editor& editor) {
        SetFocus(editor.item(IDC_NAME));
        test_support::press(VK_ESCAPE);
      },
      [](Editor& editor) {
        SendMessageW(editor.window(), WM_SYSCOMMAND, SC_CLOSE, 0);
        test_support::settle();
      },
  };
  for (const auto& leave : ways_out) {
    for (const long rule_id : {stored_id, 0L}) {
      EXPECT_EQ(IDCANCEL, edit(rule_id, [&](Editor& editor) {
                  editor.enter(IDC_NAME, L"changed");
                  editor.enter(IDC_OFFSET, L"9");
                  leave(editor);
                }));
    }
  }
  EXPECT_EQ(before, host.rules());
  EXPECT_THAT(saved(), IsEmpty());
  EXPECT_THAT(added(), IsEmpty());
}

TEST_F(EditorSave, IsDoneOnceForAnOkWithinAnOk) {
  for (const char* call : {"IkvTable::MoveFirst", "IkvExpirationRuleService::update_rule"}) {
    host.calls().forget();
    EXPECT_EQ(IDOK, edit([&](Editor& editor) {
                host.calls().inside(call, [&] { SendMessageW(editor.window(), WM_COMMAND, IDOK, 0); });
                editor.ok();
              }));
    EXPECT_EQ(1u, saved().size()) << call;
  }
}

TEST_F(EditorSave, IsNotDoneAfterACancelWithinTheCheck) {
  for (const char* call : {"IkvTable::MoveFirst", "IkvField::GetText(1077)"}) {
    EXPECT_EQ(IDCANCEL, edit([&](Editor& editor) {
                host.calls().inside(call, [&] { SendMessageW(editor.window(), WM_COMMAND, IDCANCEL, 0); });
                editor.ok();
              }))
        << call;
  }
  EXPECT_THAT(saved(), IsEmpty());
}

TEST_F(EditorSave, IsNotCancelledOnceItHasBegun) {
  const std::pair<long, const char*> saves[] = {{stored_id, "IkvExpirationRuleService::update_rule"},
                                                {0, "IkvExpirationRuleService::add_rule"}};
  for (const auto& [rule_id, call] : saves) {
    EXPECT_EQ(IDOK, edit(rule_id,
                         [&, rule_id = rule_id, call = call](Editor& editor) {
                           editor.enter(IDC_NAME, L"name " + std::to_wstring(rule_id));
                           host.calls().inside(call, [&] { SendMessageW(editor.window(), WM_COMMAND, IDCANCEL, 0); });
                           editor.ok();
                         }))
        << call;
  }
  EXPECT_EQ(1u, saved().size());
  EXPECT_EQ(1u, added().size());
}

TEST_F(EditorSave, IsNotDoneBeforeOk) {
  EXPECT_EQ(IDOK, edit([this](Editor& editor) {
              host.calls().forget();
              editor.enter(IDC_NAME, L"changed");
              editor.enter(IDC_OFFSET, L"9");
              editor.press(IDC_WEEKDAY_MODE);
              editor.choose(IDC_WEEKDAY, 6);
              editor.press(IDC_MOVE_TO_NEXT_TRADING_DAY);
              EXPECT_THAT(host.calls().all(), IsEmpty());
              editor.ok();
            }));
}

}  // namespace
}  // namespace editor_test
