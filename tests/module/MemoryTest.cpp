#include "DialogDriver.h"
#include "FailingMemory.h"
#include "FaultLoop.h"
#include "ModuleTest.h"
#include "RuntimeKind.h"

namespace module_test {
namespace {

using test_support::DialogDriver;
using test_support::FailingMemory;

class MemoryTest : public test_support::NeedsReplacedRuntime<HostedTest> {
 protected:
  MemoryTest() { host_.rules() = {{7, L"IF"}}; }

  /// Runs `action` again and again, each time with another allocation of the module failing.
  void fail_each_allocation_of(const std::function<void()>& action) {
    test_support::fail_each_allocation([&](std::size_t number) {
      FailingMemory memory(module_.handle(), number);
      action();
      memory.clear_faults();
      take_reports();
      return memory.has_failed();
    });
  }
};

TEST_F(MemoryTest, CreationWithoutMemoryReturnsOutOfMemory) {
  const base::ComPtr<IClassFactory> factory = module_.factory();
  void* object = this;
  {
    const FailingMemory memory(module_.handle(), 1);
    EXPECT_EQ(E_OUTOFMEMORY, factory->CreateInstance(nullptr, __uuidof(IkvPlugin), &object));
  }
  EXPECT_EQ(nullptr, object);
}

// A new rule is created before its editor opens. Once the editor is open, its handlers report that memory is missing.
TEST_F(MemoryTest, ShowWithoutMemoryReturnsOutOfMemoryReportsNothingAndLeavesTheRulesAsTheyAre) {
  initialize();
  const auto own = base::try_query<IzdExpirationRulesPlugin>(plugin_);
  const auto rules = host_.rules();
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  int out_of_memory = 0;
  for (const long rule : {0L, 7L}) {
    fail_each_allocation_of([&] {
      const int before = driver.dialogs();
      const HRESULT result = own->Show(rule);
      EXPECT_EQ(rules, host_.rules());
      if (result == S_OK) return;
      ++out_of_memory;
      EXPECT_EQ(E_OUTOFMEMORY, result);
      EXPECT_EQ(before, driver.dialogs());
      EXPECT_THAT(take_reports(), testing::IsEmpty());
    });
  }
  EXPECT_GT(driver.dialogs(), 0);
  EXPECT_GT(out_of_memory, 0);
}

TEST_F(MemoryTest, InitializeWithoutMemoryLeaksNothingAndWorksAfterwards) {
  fail_each_allocation_of([&] {
    const HRESULT result = initialize();
    EXPECT_TRUE(result == E_FAIL || result == S_OK);
    EXPECT_EQ(1u, references(plugin_));
    EXPECT_EQ(1u, references(menu_));
    EXPECT_EQ(1u, references(hot_keys_));
  });
  EXPECT_EQ(S_OK, initialize());
}

TEST_F(MemoryTest, CommandWithoutMemoryLeavesNoDialogOpen) {
  initialize();
  DialogDriver driver([](HWND dialog) { test_support::click(dialog, IDCANCEL); });
  fail_each_allocation_of([&] {
    const HRESULT result = command(menu_id);
    EXPECT_TRUE(result == E_FAIL || result == S_OK);
    EXPECT_EQ(1u, references(plugin_));
  });
  EXPECT_GT(driver.dialogs(), 0);
}

}  // namespace
}  // namespace module_test
