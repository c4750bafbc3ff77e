#pragma once

#include <sqlite3.h>

#include <cstddef>

#include "FaultLoop.h"

/// While it lives, the SQLite library reaches files through it, and calls can be made to fail as a bad or full disk
/// does. There may be one at a time, and no file may be open when it is created or destroyed.
class FaultyFileSystem {
 public:
  FaultyFileSystem();
  FaultyFileSystem(const FaultyFileSystem&) = delete;
  FaultyFileSystem& operator=(const FaultyFileSystem&) = delete;
  ~FaultyFileSystem();

  /// The `number`th call from now on, counted from 1, fails as the medium does.
  void break_call(std::size_t number, test_support::FaultDuration duration);

  /// The `number`th write from now on and all that follow find the disk full.
  void fill_at_write(std::size_t number);

  /// The `number`th lock from now on finds that another program holds the file.
  void hold_at_lock(std::size_t number);

  /// Nothing fails any more.
  void clear_faults();

  /// Whether a call has failed since the last fault was set.
  bool has_failed() const;
};
