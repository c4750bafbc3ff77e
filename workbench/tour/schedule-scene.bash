# Sourced by the tour: the dates of a setting, a change with the old dates beside the new ones, a check against an
# exchange's list, and a rule found from its dates.

readonly index_rule="CSI 300 index futures" index_setting="IF 沪深300 主力连续"

step schedule "a selected setting shows its contracts and the year, once the comparison of the changes so far has ended"
click_control "$workbench" "$dismiss_button"
click_row "$workbench" "$settings_pane" "$index_setting"
show_months_from 2026-01
expect "the contracts" row_count "$workbench" "$schedule_list" = 12
expect "the roll day over the New Year" in_schedule row_cell 2026-02 5 = "2026-02-24 二"
expect "the remark on it" in_schedule row_cell 2026-02 6 = "闭市顺延"
click_control "$workbench" "$estimates_box" -60 0
show_months_from 2026-07
expect "an estimated roll day" in_schedule row_cell 2027-01 5 = "≈ 2027-01-15 五"
picture

step schedule-compared "a changed rule shows the old dates beside the new ones for every setting that uses it"
show_months_from 2026-01
open_rule "$index_rule"
spin_up
spin_up
accept_editor
expect "the contracts of three settings" row_count "$workbench" "$schedule_list" = 36
expect "the new roll day" in_schedule row_cell 2026-03 5 = "2026-03-18 三"
expect "the old roll day" in_schedule row_cell 2026-03 6 = "2026-03-20 五"
picture

step schedule-dismissed "the comparison ends when it is dismissed"
click_control "$workbench" "$dismiss_button"
expect "the roll day" in_schedule row_cell 2026-03 5 = "2026-03-18 三"
picture

step check "an exchange's list is compared with the rules"
cat >"$pictures/list.csv" <<'LIST'
rule,contract,date
SHFE steel,RB2601,2026-01-15
SHFE steel,RB2602,2026-02-24
SHFE steel,RB2603,2026-03-16
SHFE steel,RB2604,2026-04-15
SHFE steel,RB2605,2026-05-18
LIST
choose_command d c
await "the dialog" window_is_open "$check_dialog"
click_control "$check_dialog" "$dates_import"
open_file "$pictures/list.csv"
expect "the dates" row_count "$check_dialog" "$dates_list" = 5
expect "a match" row_cell "$check_dialog" "$dates_list" 2026-03 5 = 0
expect "a difference" row_cell "$check_dialog" "$dates_list" 2026-05 5 = -3
picture
press Escape
await "the end of the dialog" window_is_closed "$check_dialog"

step find "a rule is found from its dates"
choose_command d f
await "the dialog" window_is_open "$find_dialog"
click_control "$find_dialog" "$find_dates"
for line in IF2601,2026-01-16 IF2602,2026-02-24 IF2603,2026-03-20 IF2604,2026-04-17 IF2605,2026-05-15 IF2606,2026-06-22 \
  IF2607,2026-07-17 IF2608,2026-08-21 IF2609,2026-09-18; do
  type_text "$line"
  press Return
done
choose_calendar "$find_dialog" china-futures
click_control "$find_dialog" "$find_button"
expect "the best rule" row_cell "$find_dialog" "$dates_list" 9/9 3 = "当月第 3 个星期五"
replace_text "$find_dialog" "$find_name" "Found index rule"
picture

step find-stored "the found rule is stored and opened in the editor"
click_control "$find_dialog" "$find_store"
await "the editor" window_is_open "$editor"
expect "the rule's name" control_text "$editor" "$name_edit" = "Found index rule"
[ "$(stored "Found index rule" WeekOrdinal)" = 3 ] || fail "another rule is stored"
picture
cancel_editor
