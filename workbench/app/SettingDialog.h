#pragma once

#include <functional>
#include <vector>

#include "ModalDialog.h"
#include "RuleRecord.h"

namespace workbench {

/// The dialog in which a symbol source setting is entered or changed.
class SettingDialog final : public ModalDialog {
 public:
  /// What can be chosen.
  struct Choices {
    std::vector<std::wstring> rules;
    std::vector<std::wstring> calendars;
  };
  /// Stores the setting. Returns a message if it could not, and the dialog stays open.
  using Save = std::function<std::wstring(const SymbolSourceSetting& setting)>;

  /// `setting` is what the dialog shows at first; one with a name is changed, another one is new.
  SettingDialog(SymbolSourceSetting setting, Choices choices, Save save);

 protected:
  void on_init() override;
  void on_command(WORD id, WORD code) override;

 private:
  SymbolSourceSetting entered() const;
  void save();

  SymbolSourceSetting setting_;
  Choices choices_;
  Save save_;
};

}  // namespace workbench
