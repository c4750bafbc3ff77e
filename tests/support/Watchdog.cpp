#include "Watchdog.h"

#include <cstdio>

#include "ScreenDump.h"

namespace test_support {

Watchdog::Watchdog(DWORD limit_ms)
    : limit_ms_(limit_ms),
      restarted_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      done_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (limit_ms_ != 0) thread_.reset(CreateThread(nullptr, 0, run, this, 0, nullptr));
}

Watchdog::~Watchdog() {
  SetEvent(done_.get());
  if (thread_) WaitForSingleObject(thread_.get(), INFINITE);
}

void Watchdog::OnTestStart(const testing::TestInfo&) { restart(); }

void Watchdog::OnTestEnd(const testing::TestInfo&) { restart(); }

void Watchdog::restart() { SetEvent(restarted_.get()); }

DWORD WINAPI Watchdog::run(void* self) {
  const auto& watchdog = *static_cast<Watchdog*>(self);
  const HANDLE events[] = {watchdog.done_.get(), watchdog.restarted_.get()};
  for (;;) {
    switch (WaitForMultipleObjects(2, events, FALSE, watchdog.limit_ms_)) {
      case WAIT_OBJECT_0:
        return 0;
      case WAIT_OBJECT_0 + 1:
        continue;
      default:
        std::fprintf(stderr, "watchdog: no test finished for %lu s. On the screen:\n", watchdog.limit_ms_ / 1000);
        dump_screen(stderr);
        std::fflush(stderr);
        // An orderly end is impossible: the hanging threads would have to take part.
        TerminateProcess(GetCurrentProcess(), watchdog_exit_code);
    }
  }
}

}  // namespace test_support
