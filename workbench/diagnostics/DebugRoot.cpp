#include "DebugRoot.h"

#include <atomic>

#include "Bstr.h"
#include "IgnoredLocations.h"
#include "RecentDialog.h"
#include "ReportDialog.h"
#include "ReportText.h"
#include "SnagtrapResource.h"
#include "Texts.h"

namespace snagtrap {

namespace {

using IKV_SnagtrapUtil::IDebugObject;

constexpr HRESULT answer_debug = 1;
constexpr DWORD recent_bytes = 64 * 1024;

std::atomic<bool> process_is_clean{true};
std::atomic<bool> window_is_open{false};

/// The right to show a window, for one report of the process at a time. The dialog's message loop lets the host run on,
/// and its further reports would open dialog upon dialog.
class DialogSlot {
 public:
  DialogSlot() noexcept : held_(!window_is_open.exchange(true)) {}
  ~DialogSlot() {
    if (held_) window_is_open = false;
  }
  DialogSlot(const DialogSlot&) = delete;
  DialogSlot& operator=(const DialogSlot&) = delete;

  bool held() const noexcept { return held_; }

 private:
  bool held_;
};

bool may_show(const Settings& settings) noexcept { return settings.interactive && can_show_windows(); }

HRESULT create(IDebugObject** created) {
  if (!created) return E_POINTER;
  *created = new Record;
  return S_OK;
}

/// Whether the record's location is always ignored. Looks it up at the first call for the record.
bool filter(Record& record) {
  if (!record.ignored) {
    const std::optional<Location> location = record.location();
    record.ignored = location && is_ignored(*location);
  }
  return *record.ignored;
}

const wchar_t* name_of(UserAnswer answer) noexcept {
  switch (answer) {
    case UserAnswer::debug:
      return L"debug";
    case UserAnswer::abort:
      return L"abort";
    case UserAnswer::always_ignore:
      return L"always ignore";
    default:
      return L"ignore";
  }
}

HRESULT result_of(UserAnswer answer) noexcept {
  switch (answer) {
    case UserAnswer::debug:
      return answer_debug;
    case UserAnswer::abort:
      return E_ABORT;
    default:
      return S_OK;
  }
}

}  // namespace

HRESULT DebugRoot::Configure(BSTR, BSTR, long) noexcept { return S_OK; }

HRESULT DebugRoot::Command(BSTR word, IDebugObject* record, IDebugObject** created) noexcept {
  return workbench::com_method([&] {
    const std::wstring_view wanted = base::view_of(word);
    return wanted == L"CREATE" ? create(created) : run(wanted, own_record(record));
  });
}

HRESULT DebugRoot::run(std::wstring_view word, Record* record) {
  if (word == L"INIT") return record ? start(*record) : E_INVALIDARG;
  if (word == L"FILTER") return !record ? E_INVALIDARG : filter(*record) ? S_FALSE : S_OK;
  if (word == L"PROCESS") return record ? process(*record) : E_INVALIDARG;
  if (word == L"DEINIT" || word == L"TERMINATE") return journal_.write(word, record, read_settings());
  if (word == L"IS CLEAN") return process_is_clean ? S_OK : S_FALSE;
  if (word == L"DO CLEAN") return clean();
  if (word == L"REPORTDIALOG") return show_recent();
  if (word == L"TRACEENABLED") return read_settings().trace_enabled ? S_OK : S_FALSE;
  return E_INVALIDARG;
}

/// Succeeds even if the log cannot be written: a client that fails to start drops every later report.
HRESULT DebugRoot::start(const Record& record) {
  journal_.propose_directory(record.text(L"LogDirectory"));
  journal_.write(L"INIT", &record, read_settings());
  return S_OK;
}

/// Writes the line before it asks the user, who may choose to end the process.
HRESULT DebugRoot::process(Record& record) {
  const Settings settings = read_settings();
  const std::optional<UINT> caption = caption_of(record);
  if (!caption) return settings.trace_enabled ? journal_.write(L"PROCESS", &record, settings) : S_OK;

  process_is_clean = false;
  const bool ignored = filter(record);
  const HRESULT logged = journal_.write(L"PROCESS", &record, settings);
  const DialogSlot slot;
  if (ignored || !slot.held() || !may_show(settings)) return logged;

  const UserAnswer answer = ask_user(report_text(record, *caption, logged));
  journal_.write_answer(name_of(answer), settings);
  if (answer == UserAnswer::always_ignore && record.location()) always_ignore(*record.location());
  return result_of(answer);
}

HRESULT DebugRoot::clean() {
  process_is_clean = true;
  return journal_.log(read_settings()).start_new_file();
}

HRESULT DebugRoot::show_recent() const {
  const Settings settings = read_settings();
  const DialogSlot slot;
  if (!slot.held() || !may_show(settings)) return S_FALSE;
  const ReportLog log = journal_.log(settings);
  show_recent_reports(log.path(), recent_text(log.tail(recent_bytes)));
  return S_OK;
}

}  // namespace snagtrap
