#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "Controls.h"
#include "Depth.h"
#include "HostileDialogs.h"
#include "ImportProbe.h"
#include "RuleName.h"
#include "resource.h"
#include "string_t.h"

ZD_IMPORT_PROBE(MessageBoxW, MessageBoxProbe);

namespace properties_test {
namespace {

using resource_string::resourse_2_string_impl;
using testing::ElementsAre;
using testing::IsEmpty;

using Texts = std::vector<std::wstring>;

/// Replaces all message boxes.
class MessageBoxes {
 public:
  MessageBoxes() {
    probe_.replace([this](HWND, LPCWSTR text, LPCWSTR, UINT flags) {
      shown_.emplace_back(text);
      return (flags & MB_TYPEMASK) == MB_YESNO ? answer : IDOK;
    });
  }

  /// The texts since the last call.
  Texts take() { return std::exchange(shown_, {}); }

  int answer = IDNO;

 private:
  MessageBoxProbe probe_;
  Texts shown_;
};

class HostileNames : public HostileDialogs {
 protected:
  /// A name of another rule or setting that tends to be mistaken for this one.
  std::wstring similar_name(const std::wstring& name) {
    switch (random.below(5)) {
      case 0:
        return name;
      case 1:
        return up_to_null(name);
      case 2:
        return name + L'\0';
      case 3:
        return name + std::wstring(L"\0x", 2);
      default:
        return any_name();
    }
  }

  void store_any_rules(long count) {
    host.rules().clear();
    for (long id = 1; id <= count; ++id) {
      host.rules().push_back({id, any_name()});
    }
  }

  std::wstring name_of(long rule_id) {
    for (const HostRule& rule : host.rules()) {
      if (rule.id == rule_id) return rule.name;
    }
    return {};
  }

  /// Stores settings of which some use the rule of this name. Returns the names of those.
  Texts store_any_settings(const std::wstring& rule_name) {
    host.settings().clear();
    Texts users;
    for (unsigned count = random.below(8); count > 0; --count) {
      const HostSetting setting = {any_name(), similar_name(rule_name)};
      host.settings().push_back(setting);
      if (setting.rule_name == rule_name) users.push_back(setting.name);
    }
    return users;
  }

  /// What the user reads before the rule is deleted.
  static std::wstring delete_text(const std::wstring& rule_name, const Texts& users) {
    if (users.empty()) {
      const std::wstring question = resourse_2_string_impl(IDS_CONFIRM_DELETE);
      const std::size_t position = question.find(L"%s");
      return question.substr(0, position) + up_to_null(rule_name) + question.substr(position + 2);
    }
    std::wstring text = resourse_2_string_impl(IDS_RULE_IN_USE) + L'\n' + up_to_null(users[0]);
    for (std::size_t index = 1; index < std::min<std::size_t>(users.size(), 3); ++index) {
      text += L", " + up_to_null(users[index]);
    }
    return users.size() > 3 ? text + L" ...\n" : text;
  }

  /// What the editor says to OK, empty when it saves.
  std::wstring refusal(long rule_id, const std::wstring& entered) {
    if (entered.empty()) return resourse_2_string_impl(IDS_NAME_EMPTY);
    const auto bears_it = [&](const HostRule& rule) { return rule.name == entered; };
    const bool exists = std::any_of(host.rules().begin(), host.rules().end(), bears_it);
    if (exists && name_of(rule_id) != entered) return resourse_2_string_impl(IDS_NAME_NOT_UNIQUE);
    using zd_expiration_rule_plugin::has_invalid_name_characters;
    return has_invalid_name_characters(entered) ? resourse_2_string_impl(IDS_NAME_BAD_CHARACTER) : std::wstring();
  }

  std::optional<MessageBoxes> boxes{std::in_place};
};

TEST_F(HostileNames, AreListedUpToTheirFirstNull) {
  for (int round = 0; round < test_support::repetitions(10, 2); ++round) {
    SCOPED_TRACE(random.trace(round));
    store_any_rules(200);
    std::vector<RuleList::Row> rows;
    list([&](HWND window) { rows = RuleList(window).rows(); });
    ASSERT_EQ(host.rules().size(), rows.size());
    for (const RuleList::Row& row : rows)
      ASSERT_EQ(up_to_null(name_of(static_cast<long>(row.rule_id))), row.name) << row.rule_id;
  }
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(HostileNames, AreShownInTheQuestionAndInTheRefusalOfADelete) {
  int questions = 0;
  int refusals = 0;
  for (int round = 0; round < test_support::repetitions(30, 12); ++round) {
    SCOPED_TRACE(random.trace(round));
    store_any_rules(10);
    list([&](HWND window) {
      for (int index = 0; index < 10; ++index) {
        const std::wstring name = name_of(static_cast<long>(RuleList(window).data(index)));
        const Texts users = store_any_settings(name);
        const auto before = host.rules();
        RuleList(window).select(index);
        send_click(window, IDC_DELETE_RULE);
        EXPECT_THAT(boxes->take(), ElementsAre(up_to_null(delete_text(name, users))));
        EXPECT_EQ(before, host.rules());
        ++(users.empty() ? questions : refusals);
      }
    });
    ASSERT_FALSE(HasFailure());
  }
  EXPECT_GT(questions, 0);
  EXPECT_GT(refusals, 0);
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(HostileNames, StandInARealMessageBoxAsTheyAre) {
  boxes.reset();
  store_any_rules(40);
  std::wstring expected;
  int shown = 0;
  const auto use = [&](HWND window) {
    for (int index = 0; index < 40; ++index) {
      SCOPED_TRACE(random.trace(index));
      const std::wstring name = name_of(static_cast<long>(RuleList(window).data(index)));
      expected = up_to_null(delete_text(name, store_any_settings(name)));
      RuleList(window).select(index);
      send_click(window, IDC_DELETE_RULE);
    }
  };
  list(use, [&](HWND box) {
    ++shown;
    EXPECT_EQ(expected, test_support::read_message_box(box).text);
    EndDialog(box, IDNO);
  });
  EXPECT_EQ(40, shown);
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(HostileNames, DoNotKeepTheRightRuleFromBeingDeleted) {
  boxes->answer = IDYES;
  for (int round = 0; round < test_support::repetitions(50, 8); ++round) {
    SCOPED_TRACE(random.trace(round));
    store_any_rules(5);
    host.rules().push_back({6, similar_name(name_of(1))});
    auto left = host.rules();
    const int index = static_cast<int>(random.below(6));
    list([&](HWND window) {
      const long rule_id = static_cast<long>(RuleList(window).data(index));
      std::erase_if(left, [&](const HostRule& rule) { return rule.id == rule_id; });
      RuleList(window).select(index);
      send_click(window, IDC_DELETE_RULE);
    });
    ASSERT_EQ(left, host.rules());
  }
  EXPECT_THAT(reports(), IsEmpty());
}

TEST_F(HostileNames, AreShownAndSavedByTheEditorUpToTheirFirstNullOrRefused) {
  std::set<std::wstring> said;
  for (int round = 0; round < test_support::repetitions(150, 50); ++round) {
    SCOPED_TRACE(random.trace(round));
    std::wstring name = random.below(2) ? any_name() : allowed_name() + (random.below(2) ? any_text(5) : L"");
    std::wstring other = similar_name(name);
    if (round % 10 == 0) name.insert(0, 1, L'\0');
    if (round % 10 == 1) {
      other = allowed_name();
      name = other + L'\0';
    }
    host.rules() = {{1, name}, {2, other}};
    host.saves().clear();
    // A host in which two rules may have one name.
    host.calls().fail_all("IkvExpirationRuleService::update_rule", {S_OK});
    const std::wstring refused = refusal(1, up_to_null(name));
    const INT_PTR result = edit(1, [&](HWND window) {
      EXPECT_EQ(up_to_null(name), test_support::item_text(window, IDC_NAME));
      send_click(window, IDOK);
    });
    ASSERT_EQ(refused.empty() ? IDOK : IDCANCEL, result);
    const Texts shown = boxes->take();
    ASSERT_EQ(refused.empty() ? Texts() : Texts{refused}, shown);
    std::vector<HostRule> saved;
    if (refused.empty()) saved.emplace_back(1, up_to_null(name));
    ASSERT_EQ(saved, host.saves());
    ASSERT_FALSE(HasFailure());
    said.insert(refused);
  }
  EXPECT_EQ(4u, said.size()) << "every refusal was met, and saving";
  EXPECT_THAT(reports(), IsEmpty());
}

}  // namespace
}  // namespace properties_test
