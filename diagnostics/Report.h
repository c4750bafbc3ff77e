#pragma once

#include <windows.h>

#include "SourceLocation.h"

/// How the rest of the module reports. Each function creates a reporter on the stack and acts on the user's answer that
/// it returns: 1 breaks into the debugger, E_ABORT shuts the client down and ends the process with exit code -1, with
/// anything else the function returns. The thread's last-error value stays as it was. A fixed location carries its own
/// text and fits only the function of its kind.
namespace SnagtrapUtil {

/// The answer to "PROCESS" by which the user asks for the debugger.
inline constexpr HRESULT answer_debug = 1;

/// Constructs the client first, without initialising it, so that it outlives later statics, whose destructors may
/// report.
void prepare_reports() noexcept;

/// Acts on the answer of a reporter.
void react(HRESULT answer) noexcept;

/// Reports an assertion unless `holds`. `expression` is the text of what should hold. Returns `holds`.
bool expect(bool holds, const wchar_t* expression, const SourceLocation& location) noexcept;
inline bool expect(bool holds, const FixedLocation<ReportKind::assertion>& fixed) noexcept {
  return expect(holds, fixed.expression, fixed.location);
}

/// Reports an assertion that carries an HRESULT and no text.
void report_hresult(HRESULT hresult, const SourceLocation& location) noexcept;
inline void report_hresult(HRESULT hresult, const FixedLocation<ReportKind::failed_call>& fixed) noexcept {
  report_hresult(hresult, fixed.location);
}

/// For calls of the host that must succeed: a failure is reported as an assertion without text and thrown on as a
/// `_com_error`. Positive results pass.
void require_success(HRESULT hresult, const SourceLocation& location);
inline void require_success(HRESULT hresult, const FixedLocation<ReportKind::failed_call>& fixed) {
  require_success(hresult, fixed.location);
}

/// The one exception translator. Called inside a catch-all: traces the exception in flight in the format of its type
/// and returns the HRESULT that stands for it: a `_com_error`'s own, E_INVALIDARG for `std::out_of_range`,
/// E_OUTOFMEMORY for `std::bad_alloc`, E_UNEXPECTED otherwise.
HRESULT report_exception_in_flight(const SourceLocation& location) noexcept;
inline HRESULT report_exception_in_flight(const FixedLocation<ReportKind::trace>& fixed) noexcept {
  return report_exception_in_flight(fixed.location);
}

/// Called inside a catch-all that returns E_FAIL whatever was thrown: reports through `CatchAndCall`.
void catch_and_call(const SourceLocation& location) noexcept;
inline void catch_and_call(const FixedLocation<ReportKind::error>& fixed) noexcept { catch_and_call(fixed.location); }

}  // namespace SnagtrapUtil
