#include <gmock/gmock.h>

#include <algorithm>
#include <functional>

#include "Depth.h"
#include "DialogDriver.h"
#include "FailingNew.h"
#include "FaultLoop.h"
#include "FaultRun.h"
#include "ImportProbe.h"
#include "ListDialogTest.h"

ZD_IMPORT_PROBE(MessageBoxW, MessageBoxProbe);

namespace list_test {
namespace {

using test_support::RecordingHost;

constexpr long used_id = 1;
constexpr long unused_id = 2;

const HostRule used = {used_id, L"a used rule, too long for a string", 1, 1, 1, 9, 2, 5, 6, 2, 1};
const HostRule unused = {unused_id, L"a rule without users, too long for a string"};
const HostRule other = {3, L"other", 9, 0, 1, 7, 0, 3, 2, 1, 1};
const std::vector<HostRule> rules = {used, unused, other};
const std::vector<HostSetting> settings = {{L"SHFE", other.name}, {L"CFFEX", used.name}};

bool stored(RecordingHost& host, const HostRule& rule) {
  return std::count(host.rules().begin(), host.rules().end(), rule) == 1;
}

/// Returns Yes from every message box that asks, without showing it.
class Agreement {
 public:
  Agreement() {
    boxes_.replace([this](HWND, LPCWSTR, LPCWSTR, UINT flags) {
      if ((flags & MB_TYPEMASK) != MB_YESNO) return IDOK;
      ++questions_;
      return IDYES;
    });
  }

  /// Whether at most as many rules were deleted as the user was asked about.
  bool confirmed_every_delete_of(RecordingHost& host) const { return rules.size() - host.rules().size() <= questions_; }

 private:
  MessageBoxProbe boxes_;
  std::size_t questions_ = 0;
};

void press_delete_on(const RuleList& list, long rule_id) {
  list.select(list.find(rule_id));
  list.press(IDC_DELETE_RULE);
}

class ListFaults : public testing::TestWithParam<Fault> {
 protected:
  /// Opens the list, presses Delete on the used rule and on the unused one, and Close.
  static INT_PTR delete_both(StorageBlock& block) {
    CExpirationRulesListDialog dialog(&block);
    const test_support::DialogDriver driver(test_support::DialogDriver::When::created, [&](HWND window, int) {
      const RuleList list(window, dialog);
      for (const long rule_id : {used_id, unused_id}) press_delete_on(list, rule_id);
      list.press(IDCANCEL);
    });
    return dialog.DoModal(nullptr);
  }

  /// Whether the lookup of the users continues without a report when this call fails.
  static bool is_quiet(const std::string& call) {
    const char* const quiet[] = {"IkvRuleFilter::SetRuleID",
                                 "IkvExpirationRuleService::load_rules",
                                 "IkvSymbolSourceService::load_symbol_source_settings",
                                 "IkvTable::GetRowCount",
                                 "IkvTable::IsEOF",
                                 "IkvTable::GetFieldByID",
                                 "IkvField::GetText(1077)"};
    return std::any_of(std::begin(quiet), std::end(quiet), [&](const char* start) { return call.find(start) == 0; });
  }

  test_support::Recorder recorder;
  test_support::RegistrySandbox registry;
};

TEST_P(ListFaults, InDeletingNeverCrashLeakOrLoseARule) {
  std::size_t number = 0;
  const auto failed =
      test_support::fail_each_call(GetParam(), [&](RecordingHost& host, const std::function<void()>& arm) {
        host.rules() = rules;
        host.settings() = settings;
        StorageBlock block = test_support::filled_block(host.storage());
        const Agreement user;
        recorder.reset();
        arm();
        EXPECT_EQ(IDCANCEL, delete_both(block));
        EXPECT_TRUE(stored(host, other));
        EXPECT_TRUE(user.confirmed_every_delete_of(host));
        ++number;
        EXPECT_TRUE(stored(host, used) || !test_support::reports(recorder).empty() ||
                    is_quiet(host.calls().all()[number - 1]));
      });
  RecordProperty("failed_calls", static_cast<int>(failed));
  EXPECT_GT(failed, 80u);
}

INSTANTIATE_TEST_SUITE_P(Each, ListFaults, testing::ValuesIn(test_support::faults_to_inject()));

class ListMemory : public ListDialogTest, public testing::WithParamInterface<long> {};

TEST_P(ListMemory, ThatFailsAtAnyAllocationOfADeleteLeavesTheDialogUsable) {
  std::vector<std::string> reported;
  host.settings() = settings;
  open([&](RuleList& list) {
    test_support::fail_each_allocation([&](std::size_t number) {
      if (host.rules() != rules) {
        host.rules() = rules;
        list.dialog().update_expiration_rule_list();
      }
      recorder.reset();
      const Agreement user;
      bool failed = false;
      {
        list.select(list.find(GetParam()));
        const test_support::FailingNew memory(number);
        list.press(IDC_DELETE_RULE);
        failed = memory.has_failed();
      }
      for (const std::string& report : test_support::reports_without_lines(recorder)) reported.push_back(report);
      EXPECT_TRUE(IsWindowVisible(list.window()));
      EXPECT_TRUE(stored(host, other));
      EXPECT_TRUE(user.confirmed_every_delete_of(host));
      list.dialog().update_expiration_rule_list();
      EXPECT_EQ(host.rules().size(), static_cast<std::size_t>(list.count()));
      return failed;
    });
    EXPECT_EQ(GetParam() == used_id, stored(host, used) && stored(host, unused)) << "with all memory";
  });
  EXPECT_THAT(reported,
              testing::Contains(testing::StartsWith("TRACE std::exception - std::bad_alloc; FILE - Dialog.h")));
}

/// A quick run leaves the refused delete to the sweeps through the lookup of a rule's users.
INSTANTIATE_TEST_SUITE_P(Each, ListMemory,
                         testing::ValuesIn(test_support::deep() ? std::vector{unused_id, used_id}
                                                                : std::vector{unused_id}),
                         [](const auto& test) { return test.param == used_id ? "Refused" : "Confirmed"; });

}  // namespace
}  // namespace list_test
