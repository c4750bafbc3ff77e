#include "Reporters.h"

#include <exception>

#include "ComPtr.h"
#include "SnagtrapClient.h"

namespace SnagtrapUtil {

namespace {

using IKV_SnagtrapUtil::IDebugObject;

static_assert(sizeof(EXCEPTION_RECORD) == 152);
static_assert(CONTEXT_FULL == 0x10000B);

/// An empty exception that carries a thread context.
struct ContextCarrier {
  explicit ContextCarrier(CONTEXT* context) noexcept { pointers.ContextRecord = context; }
  ContextCarrier(const ContextCarrier&) = delete;
  ContextCarrier& operator=(const ContextCarrier&) = delete;

  EXCEPTION_RECORD record = {};
  EXCEPTION_POINTERS pointers = {&record, nullptr};
};

void fill_exception_pointers(DebugRecord& record, const EXCEPTION_POINTERS* pointers) noexcept {
  record.ui8(L"$EXCEPTION_POINTERS", reinterpret_cast<ULONGLONG>(pointers));
}

}  // namespace

TracerClass::TracerClass(const SourceLocation& location, int group)
    : client_(snagtrap_client()), location_(location), group_(group) {}

void TracerClass::fill_location(DebugRecord& record) const noexcept {
  record.source_text(L"File", location_.file);
  record.integer(L"Line", location_.line);
  record.integer_if_set(L"$Group", group_);
}

void TracerClass::fill_function(DebugRecord& record) const noexcept {
  record.source_text(L"Function", location_.function);
  record.source_text(L"$FuncSig", location_.signature);
}

HRESULT TracerClass::process(const DebugRecord& record) noexcept {
  if (FAILED(record.status())) {
    // The result of "CREATE" is not the user's decision: E_ABORT from it must not end the process.
    status_ = record.status();
    return E_FAIL;
  }
  return client_.command(L"PROCESS", record.get());
}

HRESULT TracerClass::trace(std::wstring_view message, const TraceDetails& details) noexcept {
  if (!client_.ensure_initialised()) return E_FAIL;
  DebugRecord record(client_);
  record.text(L"$Type", L"TRACE");
  record.text_if_set(L"$Message", message);
  record.integer(L"$Ident", details.ident);
  fill_location(record);
  record.ui4(L"Thread ID", GetCurrentThreadId());
  fill_function(record);
  record.ui8_if_set(L"Object", reinterpret_cast<ULONGLONG>(details.object));
  record.r8_if_set(L"$Delay", details.delay);
  record.integer_if_set(L"Count", details.count);
  record.r8_if_set(L"$TotalTime", details.total_time);
  return process(record);
}

HRESULT TracerClass::report(const wchar_t* format, ...) noexcept {
  va_list arguments = {};
  va_start(arguments, format);
  const Bstr message = format_text_list(format, arguments);
  va_end(arguments);
  return trace(message.view());
}

HRESULT AsserterClass::assert_failed(std::wstring_view description, std::optional<HRESULT> hresult,
                                     CONTEXT* context) noexcept {
  if (!client().ensure_initialised()) return E_FAIL;
  const ContextCarrier carrier(context);
  DebugRecord record(client());
  record.marker(L"<<ASSERT>>");
  record.text(L"$Type", L"ASSERT");
  record.ui4_if_set(L"Last Error Code", last_error_.value());
  if (hresult) record.i4(L"HRESULT", *hresult);
  record.text_if_set(L"Description", description);
  record.ui4(L"Thread ID", GetCurrentThreadId());
  fill_location(record);
  fill_function(record);
  if (context) fill_exception_pointers(record, &carrier.pointers);
  if (record.get()) client().command(L"FILTER", record.get());
  return process(record);
}

void ThrowError::fill_error(DebugRecord& record, std::wstring_view description, IDebugObject* inner) const noexcept {
  record.marker(L"<<ERROR>>");
  record.text(L"$Type", L"CREATE ERROR");
  record.ui4(L"$ThreadID", GetCurrentThreadId());
  record.ui4_if_set(L"Last Error Code", last_error_.value());
  record.text_if_set(L"Description", description);
  fill_location(record);
  fill_function(record);
  if (inner) record.object(L"Inner", inner);
}

HRESULT ShowError::show(std::wstring_view description, IDebugObject* inner) noexcept {
  if (!client().ensure_initialised()) return E_FAIL;
  DebugRecord record(client());
  fill_error(record, description, inner);
  CONTEXT context = {};
  RtlCaptureContext(&context);
  context.ContextFlags = CONTEXT_FULL;
  const ContextCarrier carrier(&context);
  fill_exception_pointers(record, &carrier.pointers);
  return process(record);
}

HRESULT CatchAndCall::report_in_flight(const wchar_t* message) noexcept {
  try {
    throw;
  } catch (IDebugObject* record) {  // NOLINT(misc-throw-by-value-catch-by-reference): records are thrown by pointer
    return show(message, base::own(record));
  } catch (const std::exception& error) {
    const Bstr what(error.what(), CP_ACP);
    return show(format_text(L"%s (stdexcept: \"%s\")", message, what.view().data()).view());
  } catch (...) {
    return show(message);
  }
}

HRESULT report_structured_exception(EXCEPTION_POINTERS* pointers) {
  const base::ScopedLastError last_error;
  SnagtrapClient& client = snagtrap_client();
  if (!client.ensure_initialised()) return E_FAIL;
  DebugRecord record(client);
  record.text(L"$Type", L"ERROR");
  record.ui4(L"Thread ID", GetCurrentThreadId());
  fill_exception_pointers(record, pointers);
  if (FAILED(record.status())) return E_FAIL;
  return client.command(L"PROCESS", record.get());
}

}  // namespace SnagtrapUtil
