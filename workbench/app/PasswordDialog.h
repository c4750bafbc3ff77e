#pragma once

#include "ModalDialog.h"
#include "StoreLocation.h"

namespace workbench {

/// The dialog that asks for the password of a server, and whether Windows is to keep it.
class PasswordDialog final : public ModalDialog {
 public:
  explicit PasswordDialog(PasswordRequest request);

  /// What the user entered, if the dialog was closed with IDOK.
  const EnteredPassword& entered() const noexcept { return entered_; }

 protected:
  void on_init() override;
  void on_command(WORD id, WORD code) override;

 private:
  PasswordRequest request_;
  EnteredPassword entered_;
};

/// Asks in this dialog over the owner, which may be null.
std::optional<EnteredPassword> ask_in_dialog(HWND owner, const PasswordRequest& request);

}  // namespace workbench
