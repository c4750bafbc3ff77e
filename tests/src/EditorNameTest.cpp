#include <set>

#include "EditorTest.h"
#include "ImportProbe.h"
#include "string_t.h"

ZD_IMPORT_PROBE(MessageBoxW, MessageBoxProbe);

namespace editor_test {
namespace {

using resource_string::resourse_2_string_impl;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class EditorName : public EditorTest {
 protected:
  EditorName() { host.rules().push_back({9, L"Copper"}); }

  const std::wstring only_letters_digits_spaces = resourse_2_string_impl(IDS_NAME_BAD_CHARACTER);
  const std::wstring empty_name = resourse_2_string_impl(IDS_NAME_EMPTY);
  const std::wstring name_exists = resourse_2_string_impl(IDS_NAME_NOT_UNIQUE);

  /// Enters a name, expects the message and cancels.
  void expect_refused(const std::wstring& name, const std::wstring& message, long rule_id = stored_id) {
    const auto before = host.rules();
    EXPECT_EQ(IDCANCEL, edit(rule_id, [&](Editor& editor) {
                editor.enter(IDC_NAME, name);
                EXPECT_EQ(message, editor.refused_ok().text);
                EXPECT_EQ(name, editor.text(IDC_NAME));
                editor.cancel();
              }));
    EXPECT_EQ(before, host.rules());
  }
  void expect_saved(const std::wstring& name, long rule_id = stored_id) {
    EXPECT_EQ(IDOK, edit(rule_id, [&](Editor& editor) {
                editor.enter(IDC_NAME, name);
                editor.ok();
              }));
    EXPECT_EQ(name, rule_id == stored_id ? rule().name : host.rules().back().name);
  }
};

TEST_F(EditorName, EmptyIsRefusedBeforeTheStorageIsConsulted) {
  edit([&](Editor& editor) {
    editor.enter(IDC_NAME, L"");
    host.calls().forget();
    EXPECT_EQ(empty_name, editor.refused_ok().text);
    EXPECT_THAT(host.calls().all(), IsEmpty());
  });
}

TEST_F(EditorName, RefusalIsAMessageBoxOverTheDialogAndMovesTheFocusToTheName) {
  edit([&](Editor& editor) {
    editor.enter(IDC_NAME, L"A-B");
    SetFocus(editor.item(IDC_OFFSET));
    HWND owner = nullptr;
    test_support::with_dialog([&] { editor.ok(); },
                              [&](HWND box) {
                                owner = GetWindow(box, GW_OWNER);
                                EndDialog(box, IDOK);
                              });
    EXPECT_EQ(editor.window(), owner);
    EXPECT_EQ(editor.item(IDC_NAME), GetFocus());
    EXPECT_EQ(L"A-B", editor.text(IDC_NAME));
    editor.caret(IDC_NAME);
  });
}

TEST_F(EditorName, RefusalShowsTheCaptionAnExclamationMarkAndOneButton) {
  edit([&](Editor& editor) {
    editor.enter(IDC_NAME, L"");
    const auto box = editor.refused_ok();
    EXPECT_EQ(resourse_2_string_impl(IDS_CAPTION), box.caption);
    EXPECT_EQ(1, box.buttons);
    EXPECT_EQ(LoadIconW(nullptr, IDI_EXCLAMATION), box.icon);
  });
}

TEST_F(EditorName, IsNotRefusedAfterACancelWithinTheCheck) {
  for (const wchar_t* name : {L"Copper", L"A-B"}) {
    MessageBoxProbe boxes;
    boxes.fail(0, IDOK);
    EXPECT_EQ(IDCANCEL, edit([&](Editor& editor) {
                editor.enter(IDC_NAME, name);
                host.calls().inside("IkvTable::MoveFirst", [&] { editor.cancel(); });
                editor.ok();
              }));
    EXPECT_EQ(0, boxes.calls()) << name;
  }
}

TEST_F(EditorName, CanBeCorrectedAfterARefusal) {
  EXPECT_EQ(IDOK, edit([&](Editor& editor) {
              editor.enter(IDC_NAME, L"Copper");
              EXPECT_EQ(name_exists, editor.refused_ok().text);
              editor.enter(IDC_NAME, L"Copper 2");
              editor.ok();
            }));
  EXPECT_EQ(L"Copper 2", rule().name);
}

TEST_F(EditorName, IsSavedAsItIsUnlessACharacterOrAnotherRuleForbidsIt) {
  for (const wchar_t* name : {L" ", L"A*B", L"  a  ", L"copper", L"Coppe", L"Copper "}) expect_saved(name);
}

// RuleNameTest.cpp looks at every character.
TEST_F(EditorName, WithABadCharacterIsRefused) {
  for (const wchar_t* name : {L"A-B", L"铜"}) expect_refused(name, only_letters_digits_spaces);
}

TEST_F(EditorName, OfAnotherRuleIsRefused) {
  expect_refused(L"Copper", name_exists);
  expect_refused(L"Copper", name_exists, 0);
}

TEST_F(EditorName, ThatIsUnchangedPassesItsOwnRow) {
  save_unchanged();
  EXPECT_EQ(L"IF", rule().name);
  EXPECT_EQ(1u, host.calls().all("IkvExpirationRuleService::update_rule").size());
}

TEST_F(EditorName, ThatExistsAndHoldsABadCharacterIsRefusedAsADuplicate) {
  host.rules().back().name = L"A-B";
  expect_refused(L"A-B", name_exists);
}

TEST_F(EditorName, SearchEndsAtTheFirstEqualRow) {
  host.rules() = {{9, L"Copper"}, {10, L"Copper"}, {stored_id, L"IF"}};
  edit([&](Editor& editor) {
    editor.enter(IDC_NAME, L"Copper");
    host.calls().forget();
    editor.refused_ok();
    EXPECT_THAT(host.calls().all("IkvTable::MoveNext"), IsEmpty());
  });
}

TEST_F(EditorName, SearchReadsAllRulesRowByRow) {
  edit([&](Editor& editor) {
    editor.enter(IDC_NAME, L"new");
    host.calls().forget();
    editor.ok();
  });
  EXPECT_THAT(std::vector<std::string>(host.calls().all().begin() + 2, host.calls().all().begin() + 15),
              ElementsAre("kvTable::CreateInstance(IkvTable)", "kvRuleFilter::CreateInstance(IkvRuleFilter)",
                          "IkvRuleFilter::SetRuleID(0)", "IkvExpirationRuleService::load_rules(object, object)",
                          "IkvTable::MoveFirst", "IkvTable::IsEOF", "IkvTable::GetFieldByID(1077)",
                          "IkvField::GetText(1077)", "IkvTable::MoveNext", "IkvTable::IsEOF",
                          "IkvTable::GetFieldByID(1077)", "IkvField::GetText(1077)", "IkvTable::MoveNext"));
}

TEST_F(EditorName, OfANewRuleIsTheDefaultAndThatIsRefusedForItsCharacters) {
  edit(0, [&](Editor& editor) { EXPECT_EQ(only_letters_digits_spaces, editor.refused_ok().text); });
}

TEST_F(EditorName, OfANewRuleThatAnotherBearsAlreadyIsADuplicate) {
  host.rules().back().name = resourse_2_string_impl(IDS_NEW_RULE_NAME);
  edit(0, [&](Editor& editor) { EXPECT_EQ(name_exists, editor.refused_ok().text); });
}

TEST_F(EditorName, OfARuleWithANegativeNumberFindsItsOwnRowAsADuplicate) {
  host.rules().push_back({-3, L"odd"});
  edit(-3, [&](Editor& editor) { EXPECT_EQ(name_exists, editor.refused_ok().text); });
}

TEST_F(EditorName, IsNotEqualToARowWithoutAName) {
  host.odd_values()[KVFIELD_RULE_NAME] = {};
  expect_saved(L"Zinc");
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(EditorName, FromTheStorageThatHoldsABadCharacterMustBeCorrectedBeforeItIsSaved) {
  rule().name = L"IF\x0001";
  edit([&](Editor& editor) {
    EXPECT_EQ(only_letters_digits_spaces, editor.refused_ok().text);
    EXPECT_EQ(L"IF\x0001", editor.text(IDC_NAME));
  });
  EXPECT_EQ(L"IF\x0001", rule().name);
}

TEST_F(EditorName, FromTheStorageIsSavedUnitByUnit) {
  const std::wstring names[] = {std::wstring(63, L'W'), std::wstring(100, L'W'), L"a\tb\vc\fd", L"***", L"  "};
  for (const std::wstring& name : names) {
    rule().name = name;
    save_unchanged();
    EXPECT_EQ(name, rule().name);
  }
}

/// What a search for the name asks the table of all rules.
const char* const steps[] = {"IkvTable::MoveFirst", "IkvTable::IsEOF", "IkvTable::GetFieldByID(1077)",
                             "IkvField::GetText(1077)", "IkvTable::MoveNext"};

TEST_F(EditorName, IsTakenAsUniqueWhenTheStorageFails) {
  for (const char* step : steps) {
    SCOPED_TRACE(step);
    host.rules() = {{stored_id, L"IF"}, {9, L"Copper"}};
    EXPECT_EQ(IDOK, edit([&](Editor& editor) {
                editor.enter(IDC_NAME, L"Copper");
                host.calls().fail(step, {RPC_E_DISCONNECTED});
                host.calls().fail("IkvExpirationRuleService::update_rule", {S_OK});
                editor.ok();
              }));
    EXPECT_THAT(reports(), ElementsAre("ASSERT 80010108 | EditExpirationRuleDialog.cpp:* find_same_name",
                                       "TRACE HRESULT - 80010108; FILE - EditExpirationRuleDialog.cpp, LINE - * | "
                                       "EditExpirationRuleDialog.cpp:* is_expiration_rule_name_not_unique"));
    EXPECT_EQ(L"Copper", host.saves().back().name);
  }
}

TEST_F(EditorName, SearchReportsEachOfItsStepsUnderALineOfItsOwn) {
  std::set<std::string> locations;
  for (const char* step : steps) {
    edit([&](Editor& editor) {
      editor.enter(IDC_NAME, L"new");
      host.calls().fail(step, {RPC_E_DISCONNECTED});
      editor.ok();
    });
    rule().name = L"IF";
    const auto reported = test_support::take_reports();
    ASSERT_EQ(2u, reported.size()) << step;
    EXPECT_THAT(reported.front(), StartsWith("ASSERT 80010108 | EditExpirationRuleDialog.cpp:")) << step;
    locations.insert(reported.front());
  }
  EXPECT_EQ(std::size(steps), locations.size());
}

TEST_F(EditorName, IsTakenAsUniqueWhenNoTableCanBeCreated) {
  for (const char* creation : {"kvTable::CreateInstance", "kvRuleFilter::CreateInstance"}) {
    rule().name = L"IF";
    EXPECT_EQ(IDOK, edit([&](Editor& editor) {
                editor.enter(IDC_NAME, L"Copper");
                host.calls().fail(creation, {E_OUTOFMEMORY});
                host.calls().fail("IkvExpirationRuleService::update_rule", {S_OK});
                editor.ok();
              }));
    EXPECT_THAT(reports(), ElementsAre("TRACE HRESULT - 8007000e; FILE - EditExpirationRuleDialog.cpp, LINE - * | "
                                       "EditExpirationRuleDialog.cpp:* is_expiration_rule_name_not_unique"));
    EXPECT_EQ(L"Copper", host.saves().back().name);
  }
}

TEST_F(EditorName, IsComparedWithNoRowOfATableThatCannotBeLoaded) {
  EXPECT_EQ(IDOK, edit([&](Editor& editor) {
              editor.enter(IDC_NAME, L"Copper");
              host.calls().fail("IkvExpirationRuleService::load_rules", {E_FAIL});
              host.calls().fail("IkvExpirationRuleService::update_rule", {S_OK});
              editor.ok();
            }));
  EXPECT_EQ(L"Copper", host.saves().back().name);
  EXPECT_THAT(reports(), IsEmpty());
}

}  // namespace
}  // namespace editor_test
