#include <algorithm>

#include "ExpirationRule.h"
#include "HostileDialogs.h"
#include "RuleUsers.h"
#include "Tables.h"
#include "resource.h"
#include "zdStorageGetFieldHelper.h"

namespace properties_test {
namespace {

using test_support::Fault;
using test_support::HostValue;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

using ReportLines = std::vector<std::string>;

/// What a host may return when the module asks for a field.
struct FieldKind {
  enum class Kind {
    wrong_type,    ///< a text where a number belongs, and the reverse
    nothing,       ///< a value that was never set
    mute,          ///< an object that knows none of its methods
    unresponsive,  ///< an object that has no interface when it is asked
    null,          ///< success and no object
    missing,       ///< the result for a field that the table does not have
  };
  const char* name;
  Kind kind;
};

using Kind = FieldKind::Kind;

const FieldKind kinds[] = {
    {"WrongType", Kind::wrong_type},      {"Nothing", Kind::nothing}, {"Mute", Kind::mute},
    {"Unresponsive", Kind::unresponsive}, {"Null", Kind::null},       {"Missing", Kind::missing}};

bool is_text(tagKVFIELDID id) { return id == KVFIELD_RULE_NAME || id == KVFIELD_SETTING_NAME; }

std::string call_of(const char* call, tagKVFIELDID id) { return std::string(call) + '(' + std::to_string(id) + ')'; }

class FieldKinds : public HostileDialogs {
 protected:
  /// Runs a test for each kind.
  void for_each_kind(const std::function<void()>& test) {
    for (const FieldKind& tried : kinds) {
      SCOPED_TRACE(tried.name);
      kind_ = tried.kind;
      test();
      make_sound();
      host.calls().forget();
    }
  }

  Kind kind() const { return kind_; }
  /// Whether the field can be read all the same.
  bool is_sound() const { return kind() == Kind::unresponsive; }

  /// From now on the host returns this when it is asked for this field.
  void make_odd(tagKVFIELDID id) {
    switch (kind()) {
      case Kind::wrong_type:
        host.odd_values()[id] = is_text(id) ? HostValue(7L) : HostValue(std::wstring(L"7"));
        break;
      case Kind::nothing:
        host.odd_values()[id] = {};
        break;
      case Kind::mute:
        for (const char* call : {"IkvField::GetText", "IkvField::GetLong"}) {
          host.calls().fail_all(call_of(call, id), {E_NOTIMPL});
        }
        break;
      case Kind::unresponsive:
        host.record_queries(true);
        host.calls().fail_all("kvField::QueryInterface", {E_NOINTERFACE, Fault::Out::null});
        break;
      case Kind::null:
        host.calls().fail_all(call_of("IkvTable::GetFieldByID", id), {S_OK, Fault::Out::null});
        break;
      case Kind::missing:
        host.calls().fail_all(call_of("IkvTable::GetFieldByID", id), {S_FALSE, Fault::Out::null});
        break;
    }
  }

  void make_sound() {
    host.odd_values().clear();
    host.calls().clear_faults();
    host.record_queries(false);
  }

  /// The reports of one reading, whose lines are those of numbers or of texts.
  ReportLines reports_of_reading(tagKVFIELDID id) const {
    const auto report = [&](const std::string& what, int number_line, int text_line) {
      return "ASSERT " + what +
             " | zdStorageGetFieldHelper.h:" + std::to_string(is_text(id) ? text_line : number_line) + " GetField";
    };
    switch (kind()) {
      case Kind::wrong_type:
        return {report("80020005", 26, 42)};
      case Kind::mute:
        return {report("80004001", 26, 42)};
      case Kind::null:
        return {report("field != 0", 21, 37)};
      case Kind::missing:
        return {report("field != 0", 21, 37), report("00000001", 22, 38)};
      case Kind::nothing:
      case Kind::unresponsive:
        break;
    }
    return {};
  }

  IkvTablePtr rules() { return open_rules_table(block, 0); }

  /// Opens a table of one rule for each of its fields, which is odd meanwhile.
  void for_each_odd_field(const std::function<void(tagKVFIELDID id, const IkvTablePtr& table)>& act) {
    host.rules() = {rule};
    for (const tagKVFIELDID id : rule_fields) {
      SCOPED_TRACE(id);
      make_odd(id);
      act(id, rules());
      make_sound();
      host.calls().forget();
    }
  }

  const HostRule rule = {5, L"IF", 3, 1, 1, 15, 2, 4, 5, 2, 1};

 private:
  Kind kind_ = Kind::unresponsive;
};

/// The rule as the module reads it when the host is odd about this field.
HostRule as_read(HostRule rule, tagKVFIELDID id) {
  if (id == KVFIELD_RULE_ID) rule.id = 0;
  if (id == KVFIELD_RULE_NAME) rule.name = L"";
  for (const workbench::RuleColumn& column : workbench::rule_columns) {
    if (column.field == id) rule.*column.value = 0;
  }
  return rule;
}

TEST_F(FieldKinds, AnyFieldReadsAsItIsOrAsZeroOrEmptyAndIsReported) {
  for_each_kind([&] {
    for_each_odd_field([&](tagKVFIELDID id, const IkvTablePtr& table) {
      const HostValue read = test_support::row_of(is_sound() ? rule : as_read(rule, id)).at(id);
      if (is_text(id)) {
        const _bstr_t text = GetField<_bstr_t>(table, id);
        EXPECT_EQ(std::get<std::wstring>(read), std::wstring(text, text.length()));
      } else {
        EXPECT_EQ(std::get<long>(read), GetField<long>(table, id));
      }
      EXPECT_THAT(reports(), ElementsAreArray(reports_of_reading(id)));
    });
  });
}

TEST_F(FieldKinds, AnyFieldIsWrittenUnlessThereIsNone) {
  for_each_kind([&] {
    const bool is_there = kind() != Kind::null && kind() != Kind::missing;
    for_each_odd_field([&](tagKVFIELDID id, const IkvTablePtr& table) {
      if (is_text(id)) {
        SetField(table, id, _bstr_t(L"new"));
      } else {
        SetField(table, id, 42L);
      }
      EXPECT_EQ(is_there ? 1u : 0u, host.calls().all("IkvField::Set").size());
      EXPECT_THAT(reports(),
                  ElementsAreArray(kind() == Kind::missing
                                       ? ReportLines{"ASSERT 00000001 | zdStorageGetFieldHelper.h:210 SetField"}
                                       : ReportLines()));
    });
  });
}

TEST_F(FieldKinds, OfANewRuleKeepNothingFromBeingCreated) {
  for_each_kind([&] {
    for (const tagKVFIELDID id : rule_fields) {
      make_odd(id);
      EXPECT_TRUE(create_new_rule_row([] { return _bstr_t(L"new"); }));
      make_sound();
    }
    reports();
  });
}

TEST_F(FieldKinds, OfASettingMakeItNoUserUnlessItsNameIsThere) {
  for_each_kind([&] {
    // NOLINTNEXTLINE(bugprone-lambda-function-name): the function is not looked at
    const auto location = ZD_LOCATION_IN("ExpirationRulesListDialog.cpp", 139);
    for (const tagKVFIELDID id : {KVFIELD_RULE_NAME, KVFIELD_SETTING_NAME}) {
      SCOPED_TRACE(id);
      host.settings() = {{L"first", L"IF"}, {L"second", L"IF"}};
      make_odd(id);
      std::vector<std::wstring> users;
      HRESULT thrown = storage_test::thrown_by([&] {
        collect_rule_users(open_symbol_source_settings_table(block), L"IF", {location, location, location}, users);
      });
      const bool cannot_be_read = kind() == Kind::wrong_type || kind() == Kind::mute;
      EXPECT_EQ(cannot_be_read ? (kind() == Kind::mute ? E_NOTIMPL : DISP_E_TYPEMISMATCH) : S_OK, thrown);
      if (is_sound()) {
        EXPECT_THAT(users, ElementsAre(L"first", L"second"));
      } else if (id == KVFIELD_SETTING_NAME && kind() == Kind::nothing) {
        EXPECT_THAT(users, ElementsAre(L"", L"")) << "a user without a name is one";
      } else {
        EXPECT_THAT(users, IsEmpty());
      }
      make_sound();
      reports();
    }
  });
}

TEST_F(FieldKinds, OfARuleShowAndSaveAsZeroOrEmptyAndARuleWithoutANumberIsSavedAsANewOne) {
  for_each_kind([&] {
    const HostRule other = {6, L"Other"};
    for (const tagKVFIELDID id : rule_fields) {
      SCOPED_TRACE(id);
      host.rules() = {rule, other};
      const HostRule read = is_sound() ? rule : as_read(rule, id);
      HostRule saved = saved_unchanged(read);
      saved.name = L"New";
      make_odd(id);
      // A host that takes every number.
      host.calls().fail_all("IkvExpirationRuleService::update_rule", {S_OK});
      host.calls().fail_all("IkvExpirationRuleService::add_rule", {S_OK, Fault::Out::number, false, 7});
      EXPECT_EQ(IDOK, edit(rule.id, [&](HWND editor) {
                  EXPECT_EQ(read.name, test_support::item_text(editor, IDC_NAME));
                  SetDlgItemTextW(editor, IDC_NAME, L"New");
                  send_click(editor, IDOK);
                }));
      EXPECT_EQ(saved, host.saves().back());
      EXPECT_EQ(is_sound() || kind() == Kind::nothing, reports().empty());
      make_sound();
    }
  });
}

TEST_F(FieldKinds, OfTheListShowEmptyNamesAndRulesThatCannotBeChanged) {
  for_each_kind([&] {
    for (const tagKVFIELDID id : {KVFIELD_RULE_ID, KVFIELD_RULE_NAME}) {
      SCOPED_TRACE(id);
      host.rules() = {rule};
      const HostRule read = is_sound() ? rule : as_read(rule, id);
      make_odd(id);
      list([&](HWND window) {
        EXPECT_THAT(RuleList(window).rows(), ElementsAre(RuleList::Row{read.name, read.id}));
        for (const int button : {IDC_EDIT_RULE, IDC_DELETE_RULE})
          EXPECT_EQ(read.id > 0, RuleList(window).enabled(button));
      });
      EXPECT_EQ(is_sound() || kind() == Kind::nothing, reports().empty());
      make_sound();
    }
  });
}

TEST_F(FieldKinds, OfANameDeleteNothingUnasked) {
  for_each_kind([&] {
    host.rules() = {rule};
    host.settings() = {{L"user", rule.name}};
    const auto before = host.rules();
    make_odd(KVFIELD_RULE_NAME);
    int boxes = 0;
    list([](HWND window) { send_click(window, IDC_DELETE_RULE); },
         [&](HWND box) {
           ++boxes;
           const bool is_question = GetDlgItem(box, IDYES) != nullptr;
           // A rule without a name is used by every setting that names none.
           EXPECT_EQ(!is_sound() && kind() != Kind::nothing, is_question);
           EndDialog(box, IDNO);
         });
    EXPECT_EQ(1, boxes);
    EXPECT_EQ(before, host.rules());
    reports();
  });
}

}  // namespace
}  // namespace properties_test
