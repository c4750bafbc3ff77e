#include <cctype>

#include "ImportProbe.h"
#include "ListDialogTest.h"
#include "OwnedWindow.h"

ZD_IMPORT_PROBE(DialogBoxParamW, ModalDialogProbe);
ZD_IMPORT_PROBE(MessageBoxW, MessageBoxProbe);

namespace list_test {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr int unused_rule = 0;
constexpr int used_rule = 1;

/// The owner is destroyed while no dialog waits for its user: a report or a call of the host lets messages through.
class ListLosesItsOwner : public ListDialogTest {
 protected:
  ListLosesItsOwner() {
    store_rules({L"AU", L"IF"});
    host.settings().push_back({L"CFFEX", L"IF"});
  }
  void TearDown() override {
    EXPECT_FALSE(IsWindow(owner.get()));
    EXPECT_THAT(reports(), Not(Contains(HasSubstr("IsWindow")))) << "no function was called on a destroyed window";
  }

  /// The owner is destroyed inside a call of the host.
  void lose_inside(const std::string& call, int nth = 1) {
    host.calls().inside(call, [this, call, nth] {
      if (nth > 1) {
        lose_inside(call, nth - 1);
      } else {
        owner.destroy();
      }
    });
  }

  /// The owner is destroyed while something is reported.
  void lose_inside_a_report() {
    recorder.on_command([this](const test_support::RecordedCommand&) { owner.destroy(); });
  }

  /// In the open list the user selects a rule and presses a button. The dialog that opens over the list ends with what
  /// `answer` returns.
  void press(int rule, int button, const std::function<int()>& answer, const std::function<void()>& prepare = {}) {
    open(
        [&](RuleList& list) {
          ModalDialogProbe editors;
          editors.replace([&](auto...) { return answer(); });
          MessageBoxProbe boxes;
          boxes.replace([&](auto...) { return answer(); });
          list.select(rule);
          if (prepare) prepare();
          list.press(button);
        },
        owner.get());
  }

  /// The user types another name into the editor of the first rule and presses OK.
  void save(const std::function<void(HWND editor)>& prepare) {
    open(
        [&](RuleList& list) {
          list.select(unused_rule);
          test_support::with_dialog([&] { list.press(IDC_EDIT_RULE); },
                                    [&](HWND editor) {
                                      SetDlgItemTextW(editor, IDC_NAME, L"AU spot");
                                      prepare(editor);
                                      test_support::click(editor, IDOK);
                                    });
        },
        owner.get());
  }

  void expect_as_stored() { EXPECT_EQ(std::vector<HostRule>({{1, L"AU"}, {2, L"IF"}}), host.rules()); }

  test_support::HostWindow owner;
};

struct LosingCall {
  const char* name;
  int rule;
  int button;
  const char* call;
  int nth;
};

void PrintTo(const LosingCall& losing, std::ostream* out) { *out << losing.name; }

class ListLosesItsOwnerInACall : public ListLosesItsOwner, public testing::WithParamInterface<LosingCall> {};

TEST_P(ListLosesItsOwnerInACall, AndOpensNothingAndChangesNothing) {
  int opened = 0;
  press(
      GetParam().rule, GetParam().button,
      [&] {
        ++opened;
        return GetParam().button == IDC_DELETE_RULE ? IDYES : IDOK;
      },
      [&] { lose_inside(GetParam().call, GetParam().nth); });
  EXPECT_EQ(0, opened);
  expect_as_stored();
}

constexpr char read_rules[] = "IkvExpirationRuleService::load_rules";
constexpr char read_settings[] = "IkvSymbolSourceService::load_symbol_source_settings";

INSTANTIATE_TEST_SUITE_P(
    All, ListLosesItsOwnerInACall,
    testing::Values(LosingCall{"RuleToEdit", unused_rule, IDC_EDIT_RULE, read_rules, 1},
                    LosingCall{"NewRule", unused_rule, IDC_ADD_RULE, "kvTable::CreateInstance", 1},
                    LosingCall{"NameOfTheRuleToDelete", unused_rule, IDC_DELETE_RULE, read_rules, 1},
                    LosingCall{"UsersOfTheRuleToDelete", unused_rule, IDC_DELETE_RULE, read_settings, 1},
                    LosingCall{"NameInTheQuestion", unused_rule, IDC_DELETE_RULE, read_rules, 2},
                    LosingCall{"UsersInTheRefusal", used_rule, IDC_DELETE_RULE, read_settings, 1}),
    [](const auto& test) { return test.param.name; });

TEST_F(ListLosesItsOwner, WithTheQuestionAndItsYesDeletesNothing) {
  press(unused_rule, IDC_DELETE_RULE, [this] {
    owner.destroy();
    return IDYES;
  });
  expect_as_stored();
}

TEST_F(ListLosesItsOwner, WhileTheNameCannotBeReadAndDeletesNothing) {
  press(
      unused_rule, IDC_DELETE_RULE, [] { return IDYES; },
      [this] {
        host.calls().fail("kvTable::CreateInstance");
        lose_inside_a_report();
      });
  EXPECT_FALSE(reports().empty());
  expect_as_stored();
}

TEST_F(ListLosesItsOwner, WithTheEditorAndItsOkAndIsNotFilledAgain) {
  press(unused_rule, IDC_EDIT_RULE, [this] {
    host.calls().forget();
    owner.destroy();
    return IDOK;
  });
  EXPECT_THAT(calls(), IsEmpty());
}

TEST_F(ListLosesItsOwner, InTheDeletionAndIsNotFilledAgain) {
  press(
      unused_rule, IDC_DELETE_RULE, [] { return IDYES; },
      [this] { lose_inside("IkvExpirationRuleService::delete_rule"); });
  EXPECT_EQ("IkvExpirationRuleService::delete_rule(1)", calls().back());
}

TEST_F(ListLosesItsOwner, WhileItIsFilledAgain) {
  press(
      unused_rule, IDC_DELETE_RULE, [] { return IDYES; }, [this] { lose_inside(read_rules, 3); });
  EXPECT_EQ(1u, host.rules().size());
}

TEST_F(ListLosesItsOwner, WhileItIsFilledAfterTheEditor) {
  press(
      unused_rule, IDC_EDIT_RULE, [] { return IDOK; }, [this] { lose_inside(read_rules, 2); });
}

TEST_F(ListLosesItsOwner, WhileTheEditedRuleIsLookedFor) {
  // The numbers of both rules are read before.
  press(
      unused_rule, IDC_EDIT_RULE, [] { return IDOK; }, [this] { lose_inside("IkvField::GetLong", 3); });
}

TEST_F(ListLosesItsOwner, WhileItIsCreated) {
  lose_inside(read_rules);
  EXPECT_NE(IDOK, dialog.DoModal(owner.get()));
}

class ListLosesItsOwnerAtAField : public ListLosesItsOwner, public testing::WithParamInterface<const char*> {};

TEST_P(ListLosesItsOwnerAtAField, WhileTheEditorOpens) {
  open(
      [&](RuleList& list) {
        list.select(unused_rule);
        lose_inside(GetParam());
        list.press(IDC_EDIT_RULE);
      },
      owner.get());
  expect_as_stored();
}

INSTANTIATE_TEST_SUITE_P(All, ListLosesItsOwnerAtAField,
                         testing::Values("IkvField::GetText(1077)", "IkvField::GetLong(1079)",
                                         "IkvField::GetLong(1078)", "IkvField::GetLong(1080)",
                                         "IkvField::GetLong(1081)", "IkvField::GetLong(1082)",
                                         "IkvField::GetLong(1083)", "IkvField::GetLong(1084)",
                                         "IkvField::GetLong(1085)", "IkvField::GetLong(1160)"),
                         [](const auto& test) {
                           std::string name = test.param;
                           std::erase_if(name, [](unsigned char each) { return !std::isalnum(each); });
                           return name;
                         });

TEST_F(ListLosesItsOwner, WhileTheNamesCannotBeReadAndTheEditorSavesNothing) {
  save([this](HWND) {
    host.calls().fail("IkvTable::IsEOF");
    lose_inside_a_report();
  });
  EXPECT_FALSE(reports().empty());
  expect_as_stored();
}

TEST_F(ListLosesItsOwner, WhileTheNamesAreReadAndTheEditorSavesNothing) {
  save([this](HWND) { lose_inside("IkvTable::IsEOF"); });
  expect_as_stored();
}

TEST_F(ListLosesItsOwner, WhileTheNamesAreReadAndTheEditorRefusesNothing) {
  MessageBoxProbe boxes;
  boxes.fail(0, IDOK);
  save([this](HWND editor) {
    SetDlgItemTextW(editor, IDC_NAME, L"IF");
    lose_inside("IkvTable::IsEOF");
  });
  EXPECT_EQ(0, boxes.calls());
  expect_as_stored();
}

TEST_F(ListLosesItsOwner, WhileAControlIsMissedAndTheEditorSavesNothing) {
  save([this](HWND editor) {
    DestroyWindow(GetDlgItem(editor, IDC_WEEKDAY));
    lose_inside_a_report();
  });
  expect_as_stored();
  EXPECT_THAT(reports(), Contains(HasSubstr("Combo.m_hWnd")));
  recorder.reset();
}

TEST_F(ListLosesItsOwner, WhileTheNumberIsReadAndTheEditorSavesNothing) {
  save([this](HWND) { lose_inside("IkvField::GetLong(1025)", 2); });
  expect_as_stored();
}

TEST_F(ListLosesItsOwner, WhileTheUpdateIsStoredCompletely) {
  save([this](HWND) { lose_inside("IkvExpirationRuleService::update_rule"); });
  EXPECT_EQ(std::vector<HostRule>({{1, L"AU spot"}, {2, L"IF"}}), host.rules());
}

}  // namespace
}  // namespace list_test
