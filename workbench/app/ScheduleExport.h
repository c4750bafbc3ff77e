#pragma once

#include <string>

#include "Files.h"
#include "ScheduleModel.h"

namespace workbench {

/// A form in which a schedule is written to a file.
struct ExportFormat {
  UINT command;
  FileKind kind;
  bool is_of_a_year;  ///< whether it shows the year of the first contract month instead of the chosen months
  std::string (*write)(const Schedule& schedule, const ScheduleChoice& choice, schedule::Day today,
                       const schedule::Progress& progress);
};

/// The form that belongs to a command of the menu.
const ExportFormat& export_format(UINT command);

/// The schedule as a table of text.
std::wstring schedule_text(const Schedule& schedule, const schedule::Progress& progress = {});

}  // namespace workbench
