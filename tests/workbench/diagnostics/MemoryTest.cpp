#include "FailingMemory.h"
#include "LibraryTest.h"

namespace snagtrap_test {
namespace {

using test_support::FailingMemory;
using test_support::Memory;

class WithoutMemory : public LibraryTest {};

/// Fails the first allocation of the library that the report needs, then the second, until none fails any more.
TEST_F(WithoutMemory, ReportFailsAndTheHostGoesOn) {
  constexpr long more_than_it_needs = 1000;
  const DebugObjectPtr inner = report(L"ERROR");
  long number = 0;
  for (bool has_failed = true; has_failed;) {
    ASSERT_LT(++number, more_than_it_needs);
    const DebugObjectPtr record = report(L"ASSERT");
    set_object(*record, L"Inner", inner.get());
    FailingMemory memory(library(), number, Memory::blocks);
    const HRESULT result = command(L"PROCESS", record.get());
    has_failed = memory.has_failed();
    memory.clear_faults();
    EXPECT_EQ(result, has_failed ? E_OUTOFMEMORY : S_OK) << "at allocation " << number;
  }
  EXPECT_GT(number, 10);
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
