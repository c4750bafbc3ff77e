#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include "Owned.h"

namespace test_support {

/// The exit code of a test program that its watchdog ended.
inline constexpr UINT watchdog_exit_code = 86;

/// Ends the process when no test finishes for a while, after writing what is on the screen to stderr: a modal dialog
/// that stays open is a failed test and not a hung build. Every start and end of a test restarts its time.
class Watchdog : public testing::EmptyTestEventListener {
 public:
  /// `limit_ms` 0 switches it off.
  explicit Watchdog(DWORD limit_ms);
  ~Watchdog() override;
  Watchdog(const Watchdog&) = delete;
  Watchdog& operator=(const Watchdog&) = delete;

  void OnTestStart(const testing::TestInfo& test) override;
  void OnTestEnd(const testing::TestInfo& test) override;

 private:
  static DWORD WINAPI run(void* self);
  void restart();

  DWORD limit_ms_;
  base::KernelHandle restarted_;
  base::KernelHandle done_;
  base::KernelHandle thread_;
};

}  // namespace test_support
