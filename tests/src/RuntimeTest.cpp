#include <windows.h>
#include <gtest/gtest.h>

#include <atomic>
#include <exception>
#include <functional>
#include <latch>
#include <string>
#include <thread>
#include <vector>

#include "ImportProbe.h"

ZD_IMPORT_PROBE(HeapAlloc, HeapAllocProbe);
ZD_IMPORT_PROBE(FlsSetValue, FlsSetValueProbe);

namespace {

constexpr int threads = 8;

/// Runs this on several threads that begin together.
void on_threads(const std::function<void(int number)>& work) {
  std::latch start(threads);
  std::vector<std::thread> workers;
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

/// Throws, throws something else inside the handler, and rethrows the first: returns what arrives.
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

TEST(Exceptions, OfAThreadForWhichNothingCanBeKeptArrive) {
  const auto arrives = [] { EXPECT_EQ(5, thrown_and_rethrown(5)); };
  {
    HeapAllocProbe memory;
    memory.fail(0, nullptr);
    std::thread(arrives).join();
    EXPECT_GT(memory.calls(), 0);
  }
  FlsSetValueProbe places;
  places.fail(0, FALSE);
  std::thread(arrives).join();
  EXPECT_GT(places.calls(), 0);
}

TEST(Exceptions, EndWhereTheyBeganWhenMemoryComesBack) {
  HeapAllocProbe memory;
  memory.fail(0, nullptr);
  std::thread([&] {
    EXPECT_THROW(
        try { throw 5; } catch (int) {
          memory.replace({});
          throw;
        },
        int);
    EXPECT_EQ(0, std::uncaught_exceptions());
  }).join();
  memory.fail(0, nullptr);
  struct Giver {
    ~Giver() { probe.replace({}); }
    HeapAllocProbe& probe;
  };
  std::thread([&] {
    try {
      const Giver giver{memory};
      throw 5;
    } catch (int) {
      EXPECT_EQ(0, std::uncaught_exceptions());
    }
    EXPECT_EQ(0, std::uncaught_exceptions());
  }).join();
  EXPECT_GT(memory.calls(), 2);
}

/// Slow to make; every making is counted.
struct Slow {
  explicit Slow(std::atomic<int>& made, bool succeeds = true) : number(++made) {
    Sleep(20);
    if (!succeeds) throw number;
  }
  int number;
};

TEST(StaticVariables, AreMadeOnceAndWaitedFor) {
  std::atomic<int> made = 0;
  std::atomic<int> seen = 0;
  on_threads([&](int) {
    static const Slow slow(made);
    seen += slow.number;
  });
  EXPECT_EQ(1, made);
  EXPECT_EQ(threads, seen);
}

TEST(StaticVariables, WhoseMakingFailsAreMadeByTheNext) {
  std::atomic<int> made = 0;
  std::atomic<int> failed = 0;
  std::atomic<int> seen = 0;
  on_threads([&](int) {
    try {
      static const Slow slow(made, made == 2);
      seen += slow.number;
    } catch (int) {
      ++failed;
    }
  });
  EXPECT_EQ(3, made);
  EXPECT_EQ(2, failed);
  EXPECT_EQ((threads - 2) * 3, seen);
}

TEST(StaticVariables, MayNeedAnother) {
  static std::atomic<int> made = 0;
  struct Outer {
    Outer() {
      static const Slow inner(made);
      number = inner.number + 1;
    }
    int number;
  };
  on_threads([&](int) {
    static const Outer outer;
    EXPECT_EQ(2, outer.number);
  });
  EXPECT_EQ(1, made);
}

}  // namespace
