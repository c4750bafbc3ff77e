#include <windows.h>
#include <gmock/gmock.h>

#include <atomic>
#include <exception>
#include <functional>
#include <latch>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "ChildProcess.h"
#include "ImportProbe.h"
#include "ModulePath.h"
#include "RuntimeKind.h"

// Without the attributes of the function's declaration, which are no part of a type.
using MallocProbe = test_support::ImportProbe<"malloc", void*(WINAPI*)(std::size_t)>;

namespace {

constexpr int threads = 8;

/// Runs this on several threads that begin together.
void on_threads(const std::function<void(int number)>& work) {
  std::latch start(threads);
  std::vector<std::thread> workers;
  workers.reserve(threads);
  for (int number = 0; number < threads; ++number) {
    workers.emplace_back([&, number] {
      start.arrive_and_wait();
      work(number);
    });
  }
  for (std::thread& worker : workers) worker.join();
}

int text_length(const std::exception_ptr& exception) {
  try {
    std::rethrow_exception(exception);
  } catch (const std::string& text) {
    return static_cast<int>(text.size());
  }
}

/// Throws, throws something else inside the handler, and rethrows the first. Returns what arrives.
int thrown_and_rethrown(int number) {
  try {
    try {
      throw number;
    } catch (int) {
      EXPECT_EQ(3, text_length(std::make_exception_ptr(std::string("abc"))));
      throw;
    }
  } catch (int arrived) {
    return arrived;
  }
}

TEST(Exceptions, OfManyThreadsKeepApart) {
  std::atomic<int> right = 0;
  on_threads([&](int number) {
    for (int i = 0; i < 1000; ++i) right += thrown_and_rethrown(number * 1000 + i) == number * 1000 + i;
  });
  EXPECT_EQ(threads * 1000, right);
}

TEST(Exceptions, InFlightAreCounted) {
  struct Counter {
    ~Counter() { *seen = std::uncaught_exceptions(); }
    int* seen;
  };
  int seen = 0;
  try {
    const Counter counter{&seen};
    throw 1;
  } catch (int) {
    EXPECT_EQ(0, std::uncaught_exceptions());
  }
  EXPECT_EQ(1, seen);
}

TEST(Exceptions, LeaveTheLastErrorAlone) {
  on_threads([](int number) {
    SetLastError(static_cast<DWORD>(number));
    EXPECT_EQ(5, thrown_and_rethrown(5));
    EXPECT_EQ(static_cast<DWORD>(number), GetLastError());
  });
}

/// While it lives, the heap has no memory for this program.
class NoMemory {
 public:
  NoMemory() { probe_.fail(0, nullptr); }
  int calls() const { return probe_.calls(); }

 private:
  MallocProbe probe_;
};

class WithoutMemory : public test_support::NeedsReplacedRuntime<testing::Test> {};

TEST_F(WithoutMemory, ExceptionsArrive) {
  std::optional<NoMemory> memory(std::in_place);
  const int arrived = thrown_and_rethrown(7);
  const int calls = memory->calls();
  memory.reset();
  EXPECT_EQ(7, arrived);
  EXPECT_GT(calls, 0);
}

void wait_until(const std::atomic<int>& count, int reached) {
  while (count < reached) Sleep(1);
}

/// Each thread throws its first exception while there is no memory, and handles it while the others handle theirs.
TEST_F(WithoutMemory, ExceptionsOfSeveralThreadsKeepApart) {
  std::atomic<int> started = 0;
  std::atomic<int> without_memory = 0;
  std::atomic<int> caught = 0;
  std::atomic<int> right = 0;
  std::atomic<int> left = 0;
  std::atomic<int> with_memory = 0;
  std::vector<std::thread> workers;
  workers.reserve(threads);
  for (int number = 0; number < threads; ++number) {
    workers.emplace_back([&, number] {
      ++started;
      wait_until(without_memory, 1);
      try {
        throw int(number);
      } catch (const int& arrived) {
        ++caught;
        wait_until(caught, threads);
        right += arrived == number && std::uncaught_exceptions() == 0;
      }
      ++left;
      wait_until(with_memory, 1);
    });
  }
  wait_until(started, threads);
  {
    const NoMemory memory;
    ++without_memory;
    wait_until(left, threads);
  }
  ++with_memory;
  for (std::thread& worker : workers) worker.join();
  EXPECT_EQ(threads, right);
}

/// More often than there are blocks: each must be free again, although memory is back when the exception ends.
TEST_F(WithoutMemory, ExceptionsThatBeganThereEndThere) {
  for (int time = 0; time < 100; ++time) {
    std::optional<NoMemory> memory(std::in_place);
    try {
      throw 5;
    } catch (int) {
      memory.reset();
    }
  }
  EXPECT_EQ(0, std::uncaught_exceptions());
}

class Terminate : public test_support::NeedsReplacedRuntime<testing::Test> {};

TEST_F(Terminate, AbortsWithoutPrintingWhatWasThrown) {
  constexpr DWORD exit_code_of_abort = 3;
  const test_support::ChildResult child =
      test_support::run_child(base::path_beside_program(L"terminate_child.exe"), {});
  EXPECT_FALSE(child.timed_out);
  EXPECT_EQ(exit_code_of_abort, child.exit_code);
  EXPECT_THAT(child.output, testing::Not(testing::HasSubstr("terminate called")));
}

}  // namespace
