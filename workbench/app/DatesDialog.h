#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Files.h"
#include "ListPane.h"
#include "ModalDialog.h"
#include "ProgressDialog.h"
#include "RuleFinder.h"
#include "ScheduleModel.h"

namespace workbench {

/// What the dialogs about a list of dates have in common: a calendar, the day that is compared, a file to import, a
/// list of results with a heading, and a field for what is to be said about the lines.
class DatesDialog : public ModalDialog {
 protected:
  DatesDialog(UINT id, const ScheduleData& data, const FileDialogs& files)
      : ModalDialog(id), data_(data), files_(files) {}

  const ScheduleData& data() const noexcept { return data_; }

  /// Fills the choices; `first_calendar` is the item before the calendars, `days` are the texts for the compared day.
  void fill_choices(UINT first_calendar, std::initializer_list<UINT> days);
  /// The calendar that is chosen; null for the first item.
  const schedule::Calendar* chosen_calendar() const;

  /// The bytes of a file that the user chooses; nothing if there is none. `path` then is its path.
  std::optional<std::string> ask_for_file(std::wstring& path);

  /// What `work` returns, which may take long; nothing when the user cancels it.
  template <class Work>
  auto run_cancellable(const Work& work) -> std::optional<decltype(work(schedule::Progress()))> {
    ProgressDialog dialog(handle());
    try {
      return work(dialog.progress());
    } catch (const schedule::Cancelled&) {
      return std::nullopt;
    }
  }

  /// Shows what is to be said, one line each, as many as one reads.
  void show_messages(const std::vector<std::wstring>& lines);

 private:
  const ScheduleData& data_;
  const FileDialogs& files_;
};

/// What there is to say about a line of a file, with its number less those that were added before the first one.
std::wstring format_mistake(const schedule::Mistake& mistake, std::size_t added_lines = 0);

}  // namespace workbench
