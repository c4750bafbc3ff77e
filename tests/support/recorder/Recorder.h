#pragma once

#include <windows.h>

#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "Owned.h"
#include "RecorderControl.h"

namespace test_support {

/// The full path of the recorder: a diagnostics library that keeps every command for the test to read. It lies in the
/// folder "recorder" beside the test program, where no client finds it by name.
std::wstring recorder_path();

/// Loads the recorder, so that every client of the diagnostics library in this process finds it, and resets it. One
/// lives at a time. A client that has found the library keeps it loaded.
class Recorder {
 public:
  using Hook = std::function<void(const RecordedCommand&)>;

  /// Throws `std::runtime_error` when the recorder cannot be loaded.
  explicit Recorder(const std::wstring& path = recorder_path());
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// Everything since the last reset, in order.
  std::vector<RecordedCommand> commands() const;
  /// The commands of one word.
  std::vector<RecordedCommand> commands(const std::wstring& word) const;
  /// The records that were sent with "PROCESS" and have the "$Type" `kind`.
  std::vector<RecordedCommand> processed(const std::wstring& kind) const;
  /// The text of one field in each of these records; empty where it is missing.
  std::vector<std::wstring> texts(const std::wstring& kind, const std::wstring& field) const;
  std::vector<std::wstring> words() const;

  /// Sets what a word returns from now on. A failing call leaves the out parameter untouched unless `out` says more.
  void set_result(const std::wstring& word, HRESULT result);
  void set_result(const std::wstring& word, HRESULT result, Out out);
  /// Sets what the next use of a word returns; several calls set the results of the next uses in order.
  void set_next_result(const std::wstring& word, HRESULT result);

  /// Called inside every command, on the thread that sends it. An empty hook ends that.
  void on_command(Hook hook);

  void journal(const std::wstring& path) { control_->set_journal(path.c_str()); }
  void reset();
  long live_objects() const { return control_->live_objects(); }

 private:
  base::LoadedModule library_;
  RecorderControl* control_ = nullptr;
  Hook hook_;
};

/// The field of that name, or null.
const RecordedField* find_field(const RecordedCommand& command, const std::wstring& name);
/// The text of the field of that name; empty when there is none.
std::wstring field_text(const RecordedCommand& command, const std::wstring& name);

/// Shows a field in the message of a failed expectation.
void PrintTo(const RecordedField& field, std::ostream* out);
void PrintTo(const RecordedCommand& command, std::ostream* out);

}  // namespace test_support
