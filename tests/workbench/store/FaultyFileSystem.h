#pragma once

#include <sqlite3.h>

/// While it lives, the SQLite library reaches files through it, and calls can be made to fail as a bad or full disk
/// does. There may be one at a time, and no file may be open when it is created or destroyed.
class FaultyFileSystem {
 public:
  FaultyFileSystem();
  FaultyFileSystem(const FaultyFileSystem&) = delete;
  FaultyFileSystem& operator=(const FaultyFileSystem&) = delete;
  ~FaultyFileSystem();

  /// The `nth` call from now on, counted from 1, fails as the medium does; with `lasting`, all that follow too.
  void break_call(int nth, bool lasting);

  /// The `nth` write from now on and all that follow find the disk full.
  void fill_at_write(int nth);

  /// The `nth` lock from now on finds that another program holds the file.
  void hold_at_lock(int nth);

  /// Nothing fails any more.
  void mend();

  /// Whether a call has failed since the last order.
  bool failed() const;
};
