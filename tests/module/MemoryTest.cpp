#include "DialogDriver.h"
#include "FailingMemory.h"
#include "ModuleTest.h"

namespace module_test {
namespace {

using test_support::DialogDriver;
using test_support::FailingMemory;

class MemoryTest : public HostedTest {
 protected:
  MemoryTest() { host_.rules() = {{7, L"IF"}}; }

  /// Runs `action` again and again, failing the first allocation, then the second and so on, until none fails any
  /// more; `action` gets the number of the allocation that fails.
  void with_every_allocation_failing(const std::function<void(long number)>& action) {
    for (long number = 1;; ++number) {
      ASSERT_LT(number, 2000);
      FailingMemory memory(module_.handle(), number);
      action(number);
      memory.clear_faults();
      take_reports();
      if (!memory.has_failed()) return;
    }
  }
};

TEST_F(MemoryTest, CreationWithoutMemoryAnswersOutOfMemory) {
  const base::ComPtr<IClassFactory> factory = module_.factory();
  void* object = this;
  {
    const FailingMemory memory(module_.handle(), 1);
    EXPECT_EQ(E_OUTOFMEMORY, factory->CreateInstance(nullptr, __uuidof(IkvPlugin), &object));
  }
  EXPECT_EQ(nullptr, object);
}

// A new rule is made before its editor opens. Once that is open, it is its handlers that lack memory, and they report.
TEST_F(MemoryTest, ShowWithoutMemoryAnswersOutOfMemoryAndReportsNothing) {
  initialize();
  const auto own = base::try_query<IzdExpirationRulesPlugin>(plugin_);
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  int out_of_memory = 0;
  with_every_allocation_failing([&](long number) {
    const int before = driver.dialogs();
    const HRESULT answer = own->Show(0);
    if (answer == S_OK) return;
    ++out_of_memory;
    EXPECT_EQ(E_OUTOFMEMORY, answer) << "allocation " << number;
    EXPECT_EQ(before, driver.dialogs()) << "allocation " << number;
    EXPECT_THAT(take_reports(), testing::IsEmpty()) << "allocation " << number;
  });
  EXPECT_EQ(2, out_of_memory) << "the name of the new rule, and what owns it";
}

TEST_F(MemoryTest, InitializeWithoutMemoryLeaksNothingAndWorksAfterwards) {
  with_every_allocation_failing([&](long number) {
    const HRESULT answer = initialize();
    EXPECT_TRUE(answer == E_FAIL || answer == S_OK) << "allocation " << number;
    EXPECT_EQ(1u, references(plugin_)) << "allocation " << number;
    EXPECT_EQ(1u, references(menu_)) << "allocation " << number;
    EXPECT_EQ(1u, references(hot_keys_)) << "allocation " << number;
  });
  EXPECT_EQ(S_OK, initialize());
}

TEST_F(MemoryTest, CommandWithoutMemoryLeavesNoDialogOpen) {
  initialize();
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  with_every_allocation_failing([&](long number) {
    const HRESULT answer = command(menu_id);
    EXPECT_TRUE(answer == E_FAIL || answer == S_OK) << "allocation " << number;
    EXPECT_EQ(1u, references(plugin_)) << "allocation " << number;
  });
  EXPECT_GT(driver.dialogs(), 0);
}

TEST_F(MemoryTest, ShowWithoutMemoryLeavesTheRuleAsItIs) {
  initialize();
  const auto own = base::try_query<IzdExpirationRulesPlugin>(plugin_);
  const auto before = host_.rules();
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  for (const long rule : {0L, 7L}) {
    with_every_allocation_failing([&](long number) {
      const HRESULT answer = own->Show(rule);
      EXPECT_TRUE(answer == E_OUTOFMEMORY || answer == S_OK) << "allocation " << number;
      EXPECT_EQ(before, host_.rules()) << "allocation " << number;
    });
  }
  EXPECT_GT(driver.dialogs(), 0);
}

}  // namespace
}  // namespace module_test
