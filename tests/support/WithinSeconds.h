#pragma once

#include <windows.h>

namespace test_support {

/// Whether `holds()` comes true before these seconds are over; it is asked again and again.
template <class Condition>
bool within_seconds(int seconds, const Condition& holds) {
  const ULONGLONG end = GetTickCount64() + static_cast<ULONGLONG>(seconds) * 1000;
  while (!holds()) {
    if (GetTickCount64() >= end) return false;
    Sleep(10);
  }
  return true;
}

}  // namespace test_support
