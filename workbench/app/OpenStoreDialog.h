#pragma once

#include <functional>

#include "Files.h"
#include "ModalDialog.h"

namespace workbench {

/// The dialog in which the user names the store to open: a file, or a database on a server.
class OpenStoreDialog final : public ModalDialog {
 public:
  /// Opens the store of this name, see `find_store`, and returns whether it is open. If not, the function has shown the
  /// user why, and the dialog stays open.
  using Open = std::function<bool(const std::wstring& name)>;

  OpenStoreDialog(FileDialogs files, Open open);

 protected:
  void on_init() override;
  void on_command(WORD id, WORD code) override;

 private:
  bool names_server() const;
  void enable_fields();
  void browse();
  /// Empty when something is missing.
  std::wstring entered_name() const;
  void open();

  FileDialogs files_;
  Open open_;
};

}  // namespace workbench
