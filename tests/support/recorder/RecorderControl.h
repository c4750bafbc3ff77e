#pragma once

#include <windows.h>
#include <wtypes.h>

#include <string>
#include <vector>

namespace test_support {

/// A field as the recorder saw it at the moment of a command.
struct RecordedField {
  std::wstring name;
  VARTYPE type = VT_EMPTY;
  /// Text as it is, integers in decimal, BOOL as true or false, R8 with six digits; empty for markers and objects.
  std::wstring text;
  /// The fields of a record of the recorder that travels as VT_DISPATCH.
  std::vector<RecordedField> inner;
  /// The value of an integer, or the address of an object.
  ULONGLONG number = 0;

  /// Compares what a reader of the record sees: `number` only repeats it or is an address.
  friend bool operator==(const RecordedField& left, const RecordedField& right) {
    return left.name == right.name && left.type == right.type && left.text == right.text && left.inner == right.inner;
  }
};

/// One call that reached the recorder: a command word, or "ST_InitObject", or "Configure" with the fields "text",
/// "number" and "flag".
struct RecordedCommand {
  std::wstring word;
  std::vector<RecordedField> fields;
  HRESULT result = S_OK;
  DWORD thread = 0;
  const void* record = nullptr;  ///< identifies the record; may dangle
};

/// What happens to the out parameter of "CREATE" and "ST_InitObject".
enum class Out { created, null, untouched };

/// What the recorder's library offers to tests, over its export `recorder_control`. Callable from any thread.
struct RecorderControl {
  using Visitor = void (*)(void* context, const RecordedCommand& command);

  /// Back to an empty list, default results, no hook and no journal.
  virtual void reset() = 0;
  virtual void visit_commands(Visitor visitor, void* context) = 0;
  /// Sets what a word returns from now on; with `once` only at its next use, in the order of the calls.
  virtual void set_result(const wchar_t* word, HRESULT result, Out out, bool once) = 0;
  /// Called inside each command after it was recorded, without a lock held.
  virtual void set_hook(Visitor hook, void* context) = 0;
  /// Appends every word as one line to a file, which outlives a process that ends itself.
  virtual void set_journal(const wchar_t* path) = 0;
  /// Roots and records that are still referenced.
  virtual long live_objects() const = 0;

 protected:
  ~RecorderControl() = default;
};

using RecorderControlFunction = RecorderControl* (*)();

}  // namespace test_support
