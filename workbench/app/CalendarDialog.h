#pragma once

#include <optional>
#include <string>
#include <vector>

#include "CalendarChange.h"
#include "ModalDialog.h"
#include "Owned.h"
#include "Progress.h"
#include "ScheduleRecords.h"

namespace workbench {

/// Shows which days and which dates of rules change with an import of calendars, before anything is imported. For the
/// events of an iCalendar file it asks for what the file does not contain.
class CalendarDialog final : public ModalDialog {
 public:
  /// `stored` is what the store holds now; `question` stands above the changes.
  CalendarDialog(NamedRecords stored, std::vector<schedule::Calendar> calendars, std::wstring question);
  CalendarDialog(NamedRecords stored, std::string events, std::wstring question);

  /// What the user wants to import, if the dialog was closed with IDOK.
  const std::vector<schedule::Calendar>& calendars() const noexcept { return calendars_; }

 protected:
  void on_init() override;
  void on_command(WORD id, WORD code) override;

 private:
  void preview();
  /// Reads the events with what the user entered. Returns what is wrong; nothing if there is a calendar.
  std::string read_events(const schedule::Progress& progress);
  /// What changes, and whether anything does.
  std::string describe_changes(bool& changes, const schedule::Progress& progress) const;

  NamedRecords stored_;
  std::optional<std::string> events_;
  std::vector<schedule::Calendar> calendars_;
  std::wstring question_;
  base::Font font_;
};

}  // namespace workbench
