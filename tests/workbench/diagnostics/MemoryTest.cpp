#include "FailingMemory.h"
#include "FaultLoop.h"
#include "LibraryTest.h"
#include "RuntimeKind.h"

namespace snagtrap_test {
namespace {

using test_support::FailingMemory;
using test_support::FaultDuration;
using test_support::Memory;

class WithoutMemory : public test_support::NeedsReplacedRuntime<LibraryTest> {};

TEST_F(WithoutMemory, ReportFailsAndTheHostGoesOn) {
  const DebugObjectPtr inner = report(L"ERROR");
  for (const FaultDuration duration : {FaultDuration::once, FaultDuration::lasting}) {
    const std::size_t failed = test_support::fail_each_allocation([&](std::size_t number) {
      const DebugObjectPtr record = report(L"ASSERT");
      set_object(*record, L"Inner", inner);
      FailingMemory memory(library(), number, Memory::blocks, duration);
      const HRESULT result = command(L"PROCESS", record);
      memory.clear_faults();
      EXPECT_EQ(result, memory.has_failed() ? E_OUTOFMEMORY : S_OK);
      return memory.has_failed();
    });
    EXPECT_GT(failed, 0u);
  }
  EXPECT_FALSE(folder.lines().empty()) << "each line is whole or absent";
}

TEST_F(WithoutMemory, NoRecordIsCreated) {
  const FailingMemory memory(library(), 1, Memory::blocks);
  IKV_SnagtrapUtil::IDebugObject* created = nullptr;
  EXPECT_EQ(command(L"CREATE", nullptr, &created), E_OUTOFMEMORY);
  EXPECT_EQ(created, nullptr);
}

TEST_F(WithoutMemory, RecordRefusesAField) {
  const DebugObjectPtr record = report(L"ASSERT");
  const FailingMemory memory(library(), 1, Memory::blocks);
  EXPECT_EQ(set_number(*record, L"a name that is longer than a short string", 1), E_OUTOFMEMORY);
}

}  // namespace
}  // namespace snagtrap_test
