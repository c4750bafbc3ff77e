#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <deque>
#include <map>
#include <mutex>
#include <set>

#include "DispatchObject.h"
#include "RecorderControl.h"
#include "SnagtrapUtil.h"
#include "TextEncoding.h"

namespace test_support {
namespace {

/// Left behind as the thread's last error by every call, so that a caller which does not keep its own is found out.
constexpr DWORD clobbered_last_error = 0xBADC0DE;

class RecordingObject;
std::vector<RecordedField> snapshot_of(const RecordingObject* object);

std::mutex live_records_lock;
std::set<const RecordingObject*> live_records;

/// Null for any object that is not a living record of the recorder.
const RecordingObject* find_record(const IDispatch* object);

std::wstring text_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return workbench::text_of(value.bstrVal);
    case VT_BOOL:
      return value.boolVal ? L"true" : L"false";
    case VT_I4:
    case VT_INT:
      return std::to_wstring(value.lVal);
    case VT_UI4:
    case VT_UINT:
      return std::to_wstring(value.ulVal);
    case VT_UI8:
      return std::to_wstring(value.ullVal);
    case VT_R8:
      return std::to_wstring(value.dblVal);
    default:
      return {};
  }
}

ULONGLONG number_of(const VARIANT& value) {
  switch (value.vt) {
    case VT_I4:
    case VT_INT:
      return static_cast<ULONGLONG>(value.lVal);
    case VT_UI4:
    case VT_UINT:
      return value.ulVal;
    case VT_UI8:
      return value.ullVal;
    case VT_DISPATCH:
      return reinterpret_cast<ULONGLONG>(value.pdispVal);
    default:
      return 0;
  }
}

RecordedField record_of(const std::wstring& name, const VARIANT& value) {
  RecordedField field{name, value.vt, text_of(value), {}, number_of(value)};
  if (value.vt == VT_DISPATCH) {
    if (const RecordingObject* inner = find_record(value.pdispVal)) field.inner = snapshot_of(inner);
  }
  return field;
}

class CommandLog final : public RecorderControl {
 public:
  struct Outcome {
    HRESULT result;
    Out out;
  };

  void reset() override {
    const std::lock_guard guard(lock_);
    commands_.clear();
    outcomes_.clear();
    next_outcomes_.clear();
    hook_ = nullptr;
    journal_.clear();
  }

  void visit_commands(Visitor visitor, void* context) override {
    const std::lock_guard guard(lock_);
    for (const RecordedCommand& command : commands_) visitor(context, command);
  }

  void set_result(const wchar_t* word, HRESULT result, Out out, bool once) override {
    const std::lock_guard guard(lock_);
    if (once) {
      next_outcomes_[word].push_back({result, out});
    } else {
      outcomes_[word] = {result, out};
    }
  }

  void set_hook(Visitor hook, void* context) override {
    const std::lock_guard guard(lock_);
    hook_ = hook;
    hook_context_ = context;
  }

  void set_journal(const wchar_t* path) override {
    const std::lock_guard guard(lock_);
    journal_ = path;
  }

  long live_objects() const override { return workbench::live_dispatch_objects; }

  Outcome outcome_of(const std::wstring& word) {
    const std::lock_guard guard(lock_);
    if (auto next = next_outcomes_.find(word); next != next_outcomes_.end() && !next->second.empty()) {
      const Outcome outcome = next->second.front();
      next->second.pop_front();
      return outcome;
    }
    const auto outcome = outcomes_.find(word);
    return outcome != outcomes_.end() ? outcome->second : Outcome{S_OK, Out::created};
  }

  Outcome record(RecordedCommand command) {
    const Outcome outcome = outcome_of(command.word);
    command.result = outcome.result;
    command.thread = GetCurrentThreadId();
    Visitor hook = nullptr;
    void* context = nullptr;
    {
      const std::lock_guard guard(lock_);
      commands_.push_back(command);
      write_journal(command.word);
      hook = hook_;
      context = hook_context_;
    }
    if (hook) hook(context, command);
    return outcome;
  }

  void write_journal(const std::wstring& word) const {
    if (journal_.empty()) return;
    std::FILE* file = _wfopen(journal_.c_str(), L"ab");
    if (!file) return;
    const std::string line = base::to_utf8(word) + '\n';
    std::fwrite(line.data(), 1, line.size(), file);
    std::fclose(file);
  }

 private:
  std::mutex lock_;
  std::deque<RecordedCommand> commands_;
  std::map<std::wstring, Outcome> outcomes_;
  std::map<std::wstring, std::deque<Outcome>> next_outcomes_;
  Visitor hook_ = nullptr;
  void* hook_context_ = nullptr;
  std::wstring journal_;
};

CommandLog& command_log() {
  static CommandLog instance;
  return instance;
}

/// Fills an out parameter as the outcome says. A failing call may still create an object: callers must not leak it.
template <class Interface, class Make>
HRESULT hand_out(const CommandLog::Outcome& outcome, Interface** out, Make make) {
  if (out && outcome.out == Out::created) *out = make();
  if (out && outcome.out == Out::null) *out = nullptr;
  SetLastError(clobbered_last_error);
  return outcome.result;
}

class RecordingObject final : public workbench::DispatchObject<IKV_SnagtrapUtil::IDebugObject> {
 public:
  RecordingObject() {
    const std::lock_guard guard(live_records_lock);
    live_records.insert(this);
  }

  ~RecordingObject() override {
    {
      const std::lock_guard guard(live_records_lock);
      live_records.erase(this);
    }
    for (Field& field : fields_) VariantClear(&field.value);
    SetLastError(clobbered_last_error);
  }

  HRESULT STDMETHODCALLTYPE SetField(BSTR name, VARIANT value) noexcept override {
    const HRESULT result = command_log().outcome_of(L"SetField").result;
    if (SUCCEEDED(result)) {
      fields_.push_back({workbench::text_of(name), {}});
      VariantCopy(&fields_.back().value, &value);
    }
    SetLastError(clobbered_last_error);
    return result;
  }

  std::vector<RecordedField> snapshot() const {
    std::vector<RecordedField> fields;
    for (const Field& field : fields_) fields.push_back(record_of(field.name, field.value));
    return fields;
  }

 private:
  struct Field {
    std::wstring name;
    VARIANT value;
  };

  std::deque<Field> fields_;
};

std::vector<RecordedField> snapshot_of(const RecordingObject* object) { return object->snapshot(); }

const RecordingObject* find_record(const IDispatch* object) {
  const auto* record = static_cast<const RecordingObject*>(object);
  const std::lock_guard guard(live_records_lock);
  return live_records.contains(record) ? record : nullptr;
}

class RecordingRoot final : public workbench::DispatchObject<IKV_SnagtrapUtil::IDebugRoot> {
 public:
  HRESULT STDMETHODCALLTYPE Configure(BSTR text, BSTR number, long flag) noexcept override {
    RecordedCommand command{L"Configure", {}, S_OK, 0, nullptr};
    command.fields.push_back({L"text", VT_BSTR, workbench::text_of(text), {}, 0});
    command.fields.push_back({L"number", VT_BSTR, workbench::text_of(number), {}, 0});
    command.fields.push_back({L"flag", VT_I4, std::to_wstring(flag), {}, static_cast<ULONGLONG>(flag)});
    const HRESULT result = command_log().record(std::move(command)).result;
    SetLastError(clobbered_last_error);
    return result;
  }

  HRESULT STDMETHODCALLTYPE Command(BSTR word, IKV_SnagtrapUtil::IDebugObject* record,
                                    IKV_SnagtrapUtil::IDebugObject** created) noexcept override {
    RecordedCommand command{workbench::text_of(word), {}, S_OK, 0, record};
    if (const RecordingObject* own = find_record(record)) command.fields = own->snapshot();
    const bool creates = command.word == L"CREATE";
    const CommandLog::Outcome outcome = command_log().record(std::move(command));
    if (creates) return hand_out(outcome, created, [] { return new RecordingObject; });
    SetLastError(clobbered_last_error);
    return outcome.result;
  }

 private:
  ~RecordingRoot() override {
    command_log().write_journal(L"Release");
    SetLastError(clobbered_last_error);
  }
};

}  // namespace
}  // namespace test_support

extern "C" HRESULT STDMETHODCALLTYPE ST_InitObject(IKV_SnagtrapUtil::IDebugRoot** root) {
  using namespace test_support;
  const CommandLog::Outcome outcome = command_log().record({L"ST_InitObject", {}, S_OK, 0, nullptr});
  return hand_out(outcome, root, [] { return new RecordingRoot; });
}

extern "C" test_support::RecorderControl* recorder_control() { return &test_support::command_log(); }
