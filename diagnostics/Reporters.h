#pragma once

#include <windows.h>

#include <cstdarg>
#include <optional>
#include <string_view>

#include "DebugRecord.h"
#include "ScopedLastError.h"
#include "SourceLocation.h"

namespace SnagtrapUtil {

class SnagtrapClient;

/// What a trace may carry beside its message; zero means "not set".
struct TraceDetails {
  int ident = 0;
  const void* object = nullptr;  ///< the traced object; only its address travels
  double delay = 0;              ///< seconds
  int count = 0;
  double total_time = 0;  ///< seconds
};

/// The reporters are created on the stack at the location of the report. Each initialises the client at its first
/// report, drops the report when there is no library, and leaves the thread's last-error value as it was. They return
/// what the library returns: 1 to debug, E_ABORT to end the process, anything else to continue; E_FAIL when the report
/// was dropped. Constructors may throw what `snagtrap_client` throws; reports do not throw.
class TracerClass {
 public:
  explicit TracerClass(const SourceLocation& location, int group = 0);
  TracerClass(const TracerClass&) = delete;
  TracerClass& operator=(const TracerClass&) = delete;

  /// Sends a record of kind "TRACE".
  HRESULT trace(std::wstring_view message, const TraceDetails& details = {}) noexcept;

  /// Traces a message formatted by a wide printf format, in which %s takes wide text.
  HRESULT report(const wchar_t* format, ...) noexcept;

  /// The failing result of the last "CREATE", S_OK when there was none.
  HRESULT status() const noexcept { return status_; }

 protected:
  SnagtrapClient& client() const noexcept { return client_; }
  const SourceLocation& location() const noexcept { return location_; }
  /// "File", "Line" and "$Group".
  void fill_location(DebugRecord& record) const noexcept;
  /// "Function" and "$FuncSig".
  void fill_function(DebugRecord& record) const noexcept;
  /// Sends a filled record with "PROCESS"; a record that was not created is dropped and its failure kept.
  HRESULT process(const DebugRecord& record) noexcept;

 private:
  base::ScopedLastError last_error_;
  SnagtrapClient& client_;
  SourceLocation location_;
  int group_;
  HRESULT status_ = S_OK;
};

class AsserterClass : public TracerClass {
 public:
  using TracerClass::TracerClass;

  /// Sends a record of kind "ASSERT", first with "FILTER", then with "PROCESS". `context` may be null; when given it
  /// travels as the context of an otherwise empty exception.
  HRESULT assert_failed(std::wstring_view description, std::optional<HRESULT> hresult = std::nullopt,
                        CONTEXT* context = nullptr) noexcept;

 private:
  base::ScopedLastError last_error_;
};

class ThrowError : public AsserterClass {
 public:
  using AsserterClass::AsserterClass;

 protected:
  /// Fills a record of kind "CREATE ERROR". `inner` may be null.
  void fill_error(DebugRecord& record, std::wstring_view description,
                  IKV_SnagtrapUtil::IDebugObject* inner) const noexcept;

 private:
  base::ScopedLastError last_error_;
};

class ShowError : public ThrowError {
 public:
  using ThrowError::ThrowError;

  /// Sends the error record together with the reporting thread's register context.
  HRESULT show(std::wstring_view description, IKV_SnagtrapUtil::IDebugObject* inner = nullptr) noexcept;

 private:
  base::ScopedLastError last_error_;
};

class CatchAndCall : public ShowError {
 public:
  using ShowError::ShowError;

  /// Called inside a catch-all: reports the exception in flight. A record thrown by another module becomes the inner
  /// record of the report and is released.
  HRESULT report_in_flight(const wchar_t* message = L"") noexcept;

 private:
  base::ScopedLastError last_error_;
};

/// Sends a record of kind "ERROR" for a structured exception. Returns what a reporter returns.
HRESULT report_structured_exception(EXCEPTION_POINTERS* pointers);

}  // namespace SnagtrapUtil
