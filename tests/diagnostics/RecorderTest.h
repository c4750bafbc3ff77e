#pragma once

#include <gmock/gmock.h>

#include <string>

#include "Recorder.h"
#include "Reporters.h"
#include "SourceLocation.h"

namespace diagnostics_test {

inline constexpr SnagtrapUtil::SourceLocation location{"Some.cpp", 70, "some_function", "void some_function(int)"};

inline test_support::RecordedField text(const wchar_t* name, std::wstring value) {
  return {name, VT_BSTR, std::move(value), {}, 0};
}

inline test_support::RecordedField number(const wchar_t* name, VARTYPE type, unsigned long long value) {
  return {name, type, std::to_wstring(value), {}, 0};
}

inline test_support::RecordedField marker(const wchar_t* name) { return {name, VT_EMPTY, L"", {}, 0}; }

inline test_support::RecordedField this_thread(const wchar_t* name) {
  return number(name, VT_UI4, GetCurrentThreadId());
}

/// The recorder stands in for the library; the process's client has been initialised before the test starts.
class RecorderTest : public testing::Test {
 protected:
  RecorderTest() {
    SnagtrapUtil::TracerClass(location).trace(L"initialises the client");
    recorder.reset();
    SetLastError(0);
  }

  /// The only record that was sent with "PROCESS".
  test_support::RecordedCommand processed() const {
    const auto records = recorder.commands(L"PROCESS");
    EXPECT_EQ(records.size(), 1u);
    return records.empty() ? test_support::RecordedCommand{} : records.front();
  }

  test_support::Recorder recorder;
};

}  // namespace diagnostics_test
