#pragma once

#include <windows.h>

#include "SourceLocation.h"

/// How the rest of the module reports. Each function makes a reporter on the stack and acts on its answer: 1 breaks
/// into the debugger, E_ABORT shuts the client down and ends the process with exit code -1, anything else goes on. The
/// thread's last-error value stays as it was.
namespace SnagtrapUtil {

/// The answer to "PROCESS" by which the user asks for the debugger.
inline constexpr HRESULT answer_debug = 1;

/// Makes the client without initialising it. What is made after this call and destroyed with the module may still
/// report while it is destroyed.
void prepare_reports() noexcept;

/// Acts on the answer of a reporter.
void react(HRESULT answer) noexcept;

/// Reports an assertion unless `holds`. `expression` is the text of what should hold. Answers `holds`.
bool expect(bool holds, const wchar_t* expression, const SourceLocation& place) noexcept;

/// Reports an assertion that carries an HRESULT and no text.
void report_hresult(HRESULT hresult, const SourceLocation& place) noexcept;

/// For calls of the host that must succeed: a failure is reported as an assertion without text and thrown on as a
/// `_com_error`. Positive answers pass.
void require_success(HRESULT hresult, const SourceLocation& place);

/// The one exception translator. Called inside a catch-all: traces the exception in flight in the format of its type
/// and answers the HRESULT that stands for it: a `_com_error`'s own, E_INVALIDARG for `std::out_of_range`,
/// E_OUTOFMEMORY for `std::bad_alloc`, E_UNEXPECTED otherwise.
HRESULT report_exception_in_flight(const SourceLocation& place) noexcept;

/// Called inside a catch-all that answers E_FAIL whatever was thrown: reports through `CatchAndCall`.
void catch_and_call(const SourceLocation& place) noexcept;

}  // namespace SnagtrapUtil
