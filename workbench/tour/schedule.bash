# Sourced by the tour: the pane with the dates of what is selected, and the dialogs about lists of dates.

readonly schedule_list=205 first_month=208 estimates_box=210 dismiss_button=212
readonly check_dialog="与交易所列表核对" find_dialog="由日期查找规则"
readonly dates_import=433 dates_calendar=431 dates_list=437 dates_close=2
readonly find_dates=441 find_button=442 find_name=443 find_store=444

in_schedule() { "$1" "$workbench" "$schedule_list" "${@:2}"; }

# show_months_from MONTH: types the first month that the pane shows.
show_months_from() {
  click_control "$workbench" "$first_month"
  press ctrl+a
  type_text "$1"
  await "the contract $1" in_schedule has_row "$1"
}

# choose_command LETTERS...: a command of the workbench's menu by its letters.
choose_command() {
  press "alt+$1"
  await "the menu" menu_is_open
  press "${@:2}"
}

# open_file PATH: types the path into the system's dialog for a file, which is in the language of the system.
open_file() {
  local title="Open"
  await "the dialog for a file" window_is_open "$title"
  type_text "$(windows_path "$1")"
  press Return
  await "the end of the dialog for a file" window_is_closed "$title"
}

# choose_calendar DIALOG NAME: moves the focus from the previous control to the list of calendars and presses the name's
# first letter.
choose_calendar() {
  press Tab
  await "the focus on the calendars" has_focus "$1" "$dates_calendar"
  press "${2:0:1}"
  expect "the calendar" control_text "$1" "$dates_calendar" = "$2"
}
