#pragma once

#include <windows.h>

#include <optional>
#include <string>

/// The program `store_writer`, running; see there for its arguments. It is killed with the object.
class StoreWriter {
 public:
  explicit StoreWriter(const std::wstring& arguments);
  StoreWriter(const StoreWriter&) = delete;
  StoreWriter& operator=(const StoreWriter&) = delete;
  ~StoreWriter();

  /// Waits for the next change that the program acknowledges and answers its number; nothing once there are no more.
  std::optional<unsigned> next_acknowledged();

  /// The exit code of a program that was killed.
  static constexpr DWORD killed = 0xDEAD;

  /// Ends the program where it stands.
  void kill();

  /// Waits for the program's end and answers its exit code.
  DWORD exit_code();

 private:
  HANDLE process_ = nullptr;
  HANDLE output_ = nullptr;
};
