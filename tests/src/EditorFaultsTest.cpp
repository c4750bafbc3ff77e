#include <gmock/gmock.h>

#include <functional>
#include <new>
#include <optional>

#include "DialogScript.h"
#include "EditExpirationRuleDialog.h"
#include "ExpectedReports.h"
#include "FailingNew.h"
#include "FaultLoop.h"
#include "FaultRun.h"
#include "FilledBlock.h"
#include "resource.h"

namespace editor_faults_test {
namespace {

using test_support::Fault;
using test_support::HostRule;
using test_support::RecordingHost;
using zd_expiration_rule_plugin::CEditExpirationRuleDialog;

constexpr long stored_id = 5;

/// Opens the editor and saves under `name`; whatever box opens is closed. Returns the exception's HRESULT when the host
/// does not let it open. `arm` is called just before.
HRESULT save_as(
    StorageBlock& block, long rule_id, const std::wstring& name, const std::function<void()>& arm = [] {}) {
  const test_support::DialogDriver driver(test_support::DialogDriver::When::created, [&](HWND dialog, int number) {
    if (!test_support::is_rule_editor(dialog)) {
      test_support::close_message_box(dialog);
    } else {
      if (number == 1) SetDlgItemTextW(dialog, IDC_NAME, name.c_str());
      test_support::send_click(dialog, number == 1 ? IDOK : IDCANCEL);
    }
  });
  try {
    arm();
    CEditExpirationRuleDialog dialog(&block, rule_id);
    const INT_PTR result = dialog.DoModal(nullptr);
    EXPECT_TRUE(result == IDOK || result == IDCANCEL) << result;
    return S_OK;
  } catch (const _com_error& error) {
    return error.Error();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

class EditorFaults : public testing::TestWithParam<Fault> {
 protected:
  // The tests of each call say which reports each fault leads to.
  ~EditorFaults() override { test_support::take_reports(); }
};

TEST_P(EditorFaults, InEditingNeverCrashLeakOrStoreHalfARule) {
  const auto failed =
      test_support::fail_each_call(GetParam(), [](RecordingHost& host, const std::function<void()>& arm) {
        const HostRule other{9, L"Copper", 1, 1, 1, 9, 2, 5, 6, 2, 1};
        host.rules() = {{stored_id, L"IF"}, other};
        StorageBlock block = test_support::filled_block(host.storage());
        arm();
        save_as(block, stored_id, L"IF 2");
        ASSERT_GE(host.rules().size(), 2u);
        EXPECT_TRUE(host.rules()[0].name == L"IF" || host.rules()[0].name == L"IF 2");
        EXPECT_EQ(stored_id, host.rules()[0].id);
        EXPECT_EQ(other, host.rules()[1]);
      });
  RecordProperty("failed_calls", static_cast<int>(failed));
  EXPECT_GT(failed, 40u);
}

TEST_P(EditorFaults, InAddingNeverCrashLeakOrStoreHalfARule) {
  const auto failed =
      test_support::fail_each_call(GetParam(), [](RecordingHost& host, const std::function<void()>& arm) {
        const HostRule other{9, L"Copper", 1, 1, 1, 9, 2, 5, 6, 2, 1};
        host.rules() = {other};
        StorageBlock block = test_support::filled_block(host.storage());
        arm();
        save_as(block, 0, L"new");
        ASSERT_LE(host.rules().size(), 2u);
        EXPECT_EQ(other, host.rules()[0]);
      });
  RecordProperty("failed_calls", static_cast<int>(failed));
  EXPECT_GT(failed, 60u);
}

INSTANTIATE_TEST_SUITE_P(Each, EditorFaults, testing::ValuesIn(test_support::faults_to_inject()));

TEST(EditorMemory, ThatFailsAtAnyAllocationNeverCrashesLeaksOrStoresHalfARule) {
  const std::wstring new_name = L"another name that is too long for a string itself";
  test_support::fail_each_allocation([&](std::size_t number) {
    RecordingHost host;
    host.rules() = {{stored_id, L"a name that is too long for a string itself"}};
    const HostRule before = host.rules()[0];
    StorageBlock block = test_support::filled_block(host.storage());
    std::optional<test_support::FailingNew> memory;
    save_as(block, stored_id, new_name, [&] { memory.emplace(number); });
    const bool failed = memory->has_failed();
    memory.reset();
    EXPECT_TRUE(host.rules()[0] == before || host.rules()[0].name == new_name);
    return failed;
  });
  test_support::take_reports();
}

TEST(EditorFailure, ToCreateTheTableOrTheFilterIsThrownByTheConstructor) {
  RecordingHost host;
  StorageBlock block = test_support::filled_block(host.storage());
  for (const char* creation : {"kvTable::CreateInstance", "kvRuleFilter::CreateInstance"}) {
    host.calls().fail(creation, {E_OUTOFMEMORY});
    EXPECT_EQ(E_OUTOFMEMORY, save_as(block, stored_id, L"IF"));
  }
  host.calls().fail("kvTable::CreateInstance", {E_OUTOFMEMORY});
  EXPECT_EQ(E_POINTER, save_as(block, 0, L"new"));
}

}  // namespace
}  // namespace editor_faults_test
