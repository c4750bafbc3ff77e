#include "SettingEditor.h"

#include <algorithm>

#include "StoreMessages.h"
#include "Texts.h"
#include "resource.h"

namespace workbench {

std::wstring SettingEditor::save(const SymbolSourceSetting& entered) try {
  try {
    store(entered);
    return {};
  } catch (const StoreError& error) {
    const bool conflict =
        error.kind() == StoreErrorKind::setting_changed || error.kind() == StoreErrorKind::setting_not_found;
    return conflict ? adopt_conflict() : store_failure(error, nullptr);
  }
} catch (const schedule::Cancelled&) {
  return text(IDS_CANCELLED);
}

void SettingEditor::store(const SymbolSourceSetting& entered) {
  if (stored_.number == 0) {
    store_.add_setting(entered);
  } else {
    store_.update_setting(stored_.number, entered, stored_.revision);
  }
}

/// The message names the values that another program stored, because the dialog hides them.
std::wstring SettingEditor::adopt_conflict() {
  const std::vector<StoredSetting> settings = store_.load_settings();
  const auto found = std::ranges::find(settings, stored_.number, &StoredSetting::number);
  if (found == settings.end()) {
    stored_.number = 0;
    return text(IDS_SETTING_DELETED_MEANWHILE, {stored_.setting.name});
  }
  stored_ = *found;
  const SymbolSourceSetting& now = stored_.setting;
  return text(IDS_SETTING_CONFLICT, {now.name, now.rule_name.empty() ? text(IDS_NO_RULE_CHOSEN) : now.rule_name,
                                     now.calendar.empty() ? text(IDS_NO_CALENDAR_CHOSEN) : now.calendar,
                                     now.months.empty() ? text(IDS_EVERY_MONTH) : now.months,
                                     text(now.last_day_is_expiration ? IDS_COLUMN_EXPIRATION : IDS_COLUMN_ROLL)});
}

}  // namespace workbench
