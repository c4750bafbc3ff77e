#include "Report.h"

#include <comdef.h>

#include <new>
#include <stdexcept>

#include "Reporters.h"
#include "ScopedLastError.h"
#include "SnagtrapClient.h"

namespace SnagtrapUtil {

namespace {

[[noreturn]] void end_process() noexcept {
  try {
    SnagtrapClient& client = snagtrap_client();
    client.ensure_initialised();
    client.shutdown();
  } catch (...) {
    // Without a client there is nothing to shut down.
  }
  TerminateProcess(GetCurrentProcess(), aborted_exit_code);
  __builtin_unreachable();
}

/// Creates a reporter, lets `report` use it and acts on the answer. A reporter that cannot be created drops the report.
template <class Reporter, class Report>
void report_with(const SourceLocation& location, const Report& report) noexcept {
  HRESULT answer = E_FAIL;
  try {
    Reporter reporter(location);
    answer = report(reporter);
  } catch (...) {
    return;
  }
  react(answer);
}

void trace_message(const Bstr& message, const SourceLocation& location) noexcept {
  report_with<TracerClass>(location, [&](TracerClass& tracer) { return tracer.trace(message.view()); });
}

void trace_hresult(HRESULT hresult, const SourceLocation& location) noexcept {
  const Bstr file(location.file, CP_UTF8);
  trace_message(format_text(L"HRESULT - %x; FILE - %s, LINE - %d", static_cast<unsigned>(hresult), file.view().data(),
                            location.line),
                location);
}

}  // namespace

void prepare_reports() noexcept {
  try {
    snagtrap_client();
  } catch (...) {
    // Reports are dropped then.
  }
}

void react(HRESULT answer) noexcept {
  if (answer == answer_debug) DebugBreak();
  if (answer == E_ABORT) end_process();
}

bool expect(bool holds, const wchar_t* expression, const SourceLocation& location) noexcept {
  if (!holds) {
    report_with<AsserterClass>(location, [&](AsserterClass& asserter) { return asserter.assert_failed(expression); });
  }
  return holds;
}

void report_hresult(HRESULT hresult, const SourceLocation& location) noexcept {
  report_with<AsserterClass>(location, [&](AsserterClass& asserter) { return asserter.assert_failed({}, hresult); });
}

void require_success(HRESULT hresult, const SourceLocation& location) {
  if (SUCCEEDED(hresult)) return;
  report_hresult(hresult, location);
  throw _com_error(hresult);
}

HRESULT report_exception_in_flight(const SourceLocation& location) noexcept {
  const base::ScopedLastError last_error;
  try {
    throw;
  } catch (const _com_error& error) {
    trace_hresult(error.Error(), location);
    return error.Error();
  } catch (const std::out_of_range& error) {
    trace_message(
        format_narrow_text("std::out_of_range - %s; FILE - %s, LINE - %d", error.what(), location.file, location.line),
        location);
    return E_INVALIDARG;
  } catch (const std::exception& error) {
    trace_message(
        format_narrow_text("std::exception - %s; FILE - %s, LINE - %d", error.what(), location.file, location.line),
        location);
    return dynamic_cast<const std::bad_alloc*>(&error) ? E_OUTOFMEMORY : E_UNEXPECTED;
  } catch (...) {
    const Bstr file(location.file, CP_UTF8);
    trace_message(format_text(L"unknown exception; FILE - %s, LINE - %d", file.view().data(), location.line), location);
    return E_UNEXPECTED;
  }
}

void catch_and_call(const SourceLocation& location) noexcept {
  report_with<CatchAndCall>(location, [](CatchAndCall& reporter) { return reporter.report_in_flight(); });
}

}  // namespace SnagtrapUtil
