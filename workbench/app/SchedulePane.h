#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "ScheduleLayout.h"
#include "ScheduleList.h"
#include "Window.h"
#include "YearWindow.h"

namespace workbench {

/// The pane that shows which days a rule or a setting gives: choices, a year at a glance and the list of contracts.
/// After a change of the store it shows the old dates beside the new ones for every setting that the change touches,
/// until that is dismissed.
class SchedulePane final : public Window {
 public:
  /// `today` is the day whose month is the first that is shown.
  SchedulePane(HWND parent, UINT id, schedule::Day today);

  /// Shows the dates of this content and keeps the previous content for a comparison. Work that takes long shows its
  /// progress; a call during that work takes effect afterwards.
  void show_data(ScheduleData data);
  /// Shows nothing. The next data are compared with nothing.
  void forget_data();
  /// Shows the dates of the rule or the setting with this number; 0: of nothing.
  void select_rule(long number);
  void select_setting(long number);
  void dismiss_comparison();
  void toggle_estimates();

  void use_font(HFONT font, int dpi);

  bool compares() const noexcept { return comparing_; }
  bool shows_estimates() const noexcept { return choice_.estimates; }
  /// What is shown now.
  const Schedule& schedule() const noexcept { return schedule_; }
  /// The same for every contract that rolls or expires in the year of the first month.
  Schedule schedule_of_year(const schedule::Progress& progress) const;
  const ScheduleChoice& choice() const noexcept { return choice_; }
  const ScheduleData& data() const noexcept { return *data_; }

  HWND list() const noexcept { return list_->list(); }
  /// The windows that take the keyboard focus, in the order of the Tab key.
  std::vector<HWND> focus_order() const;

 protected:
  LRESULT handle_message(UINT message, WPARAM wparam, LPARAM lparam) override;
  void message_failed() noexcept override;

 private:
  LRESULT on_create();
  LRESULT on_command(WORD id, WORD code);
  void create_choices();
  void fill_calendars();
  void read_choices();
  void select(long rule, long setting);
  void update();
  /// Shows what the choices and the data give, or why that cannot be shown.
  void show_schedule();
  void calculate();
  void show_nothing(const std::wstring& why);
  Schedule schedule_of(const ScheduleChoice& choice, const schedule::Progress& progress) const;
  std::wstring heading() const;
  std::wstring notice() const;
  void lay_out();

  // Work that takes long dispatches other messages, which may set new data and choices.
  std::shared_ptr<const ScheduleData> data_ = std::make_shared<ScheduleData>();
  std::shared_ptr<const ScheduleData> baseline_;  ///< what a comparison compares with, if there is one
  bool has_data_ = false;
  bool is_changed_ = false;  ///< whether the data are new since the last calculation
  bool is_stale_ = false;    ///< whether the data or the choices are
  bool calculating_ = false;
  ScheduleChoice choice_;
  Schedule schedule_;
  bool comparing_ = false;
  int dpi_ = USER_DEFAULT_SCREEN_DPI;

  HWND calendar_ = nullptr;
  HWND first_ = nullptr;
  HWND months_ = nullptr;
  HWND estimates_ = nullptr;
  HWND notice_ = nullptr;
  HWND dismiss_ = nullptr;
  std::optional<YearWindow> year_;
  std::optional<ScheduleList> list_;
};

}  // namespace workbench
