#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "ChildProcess.h"

/// What a program says of a change on its standard output: `number?` before it begins, `number` once it is
/// acknowledged.
struct StoreWriterProgress {
  unsigned number = 0;
  bool acknowledged = false;
};

/// A running program that changes a store: `store_writer`, see there for its arguments, or another one of this folder.
/// It is killed with the object.
class StoreWriter {
 public:
  explicit StoreWriter(const std::wstring& arguments, const std::wstring& program = L"store_writer.exe");
  StoreWriter(const StoreWriter&) = delete;
  StoreWriter& operator=(const StoreWriter&) = delete;
  ~StoreWriter();

  /// Waits for the next line that the program writes, and returns it without its end; nothing once there is no more.
  std::optional<std::string> next_line();

  /// Waits for the next thing that the program says; nothing once there is no more.
  std::optional<StoreWriterProgress> next_progress();

  /// Waits for the next change that the program acknowledges. Returns its number, or nothing when there are no more.
  std::optional<unsigned> next_acknowledged();

  /// The exit code of a program that was killed.
  static constexpr DWORD killed = 0xDEAD;

  /// Ends the program where it stands.
  void kill();

  /// Waits for the program's end and returns its exit code.
  DWORD exit_code();

  /// Waits for the program's end, at most so long, and returns whether it ended.
  bool ends_within(DWORD milliseconds) {
    return WaitForSingleObject(started_.process(), milliseconds) == WAIT_OBJECT_0;
  }

 private:
  test_support::StartedProgram started_;
};
