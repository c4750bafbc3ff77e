#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Files.h"
#include "MainWindow.h"
#include "StoreLocation.h"

namespace workbench {

/// The commands that open another store in the running window. One that cannot be opened leaves the present one open.
class StoreChooser {
 public:
  /// `use` replaces the present store with another open one.
  StoreChooser(MainWindow& window, FileDialogs files, std::function<void(OpenedStore)> use);

  /// Asks the user for a store.
  void choose();

  /// Opens the recent store with this index.
  void open_recent(std::size_t index);

  /// The descriptions of the recent stores, the last one first.
  static std::vector<std::wstring> recent();

 private:
  /// Nothing when the store could not be opened, which the user has been shown, or when the user cancelled.
  std::optional<OpenedStore> try_open(const std::wstring& name);
  OpenedStore open(const std::wstring& name);

  MainWindow& window_;
  FileDialogs files_;
  std::function<void(OpenedStore)> use_;
};

}  // namespace workbench
