# Sourced by the tour: the list of rules, from the menu command to its second opening.

readonly new_rule="ZZ harvest" renamed_rule="AA harvest"
readonly used_rule="CFFEX treasury bond futures" users="TS 2年期国债, TF 5年期国债, T 10年期国债"

step list "the menu command opens the list of rules"
forget_placement
open_plugin_menu
press Return
await_list "$rules"
expect "the first rule" in_list row_state "CBOT 10 year treasury notes" = selected,focused
expect "the workbench" window_state "$workbench" = disabled
picture

step rule-opened "a double-click on a row opens its rule, and Esc leaves everything as it was"
in_list open_row "$used_rule" "$editor"
expect "the name" control_text "$editor" "$name_edit" = "$used_rule"
picture
cancel_editor
expect "the rows of the list" in_list row_count = "$rules"
expect "the rule under the click" in_list row_state "$used_rule" = selected,focused

step rule-added "a new rule is stored, selected, and stands in the workbench's pane"
click_control "$rules_dialog" "$add_button"
await "the editor of a new rule" window_is_open "$new_rule_editor"
replace_text "$new_rule_editor" "$name_edit" "$new_rule"
replace_text "$new_rule_editor" "$offset_edit" 3
picture
accept_editor "$new_rule_editor"
await_list $((rules + 1))
expect "the new rule" in_list row_state "$new_rule" = selected,focused
await "the focus on the list" has_focus "$rules_dialog" "$rules_list"
expect "the stored offset" stored "$new_rule" RollOffset = 3
await "the new rule in the workbench" has_row "$workbench" "$rules_pane" "$new_rule"

step rule-edited "Enter edits the selected rule; under its new name it is still the selected one"
press Return
await "the editor" window_is_open "$editor"
replace_text "$editor" "$name_edit" "$renamed_rule"
accept_editor
await "the renamed rule" in_list has_row "$renamed_rule"
expect "the renamed rule" in_list row_state "$renamed_rule" = selected,focused
expect "the stored offset" stored "$renamed_rule" RollOffset = 3
await "the renamed rule in the workbench" has_row "$workbench" "$rules_pane" "$renamed_rule"
picture

step rule-in-use "a rule in use is not deleted; the message names its users"
before=$(print_rules)
select_rule "$used_rule"
click_control "$rules_dialog" "$delete_button"
await_message "$rule_in_use $users ... "
picture
press Return
await_no_message "$rule_in_use $users ... "
[ "$(print_rules)" = "$before" ] || fail "the store changed although the rule is in use"

step delete-question "a delete asks first, and No keeps the rule"
select_rule "$renamed_rule"
press Delete
await_message "$(delete_question "$renamed_rule")"
picture
click_control "$rules_dialog" "$no_button"
await_no_message "$(delete_question "$renamed_rule")"
[ "$(print_rules)" = "$before" ] || fail "the store changed although the answer was No"

step rule-deleted "Yes deletes it, and the first rule is selected"
click_control "$rules_dialog" "$delete_button"
await_message "$(delete_question "$renamed_rule")"
click_control "$rules_dialog" "$yes_button"
await_list "$rules"
expect "the first rule" in_list row_state "CBOT 10 year treasury notes" = selected,focused
[ -z "$(stored "$renamed_rule" RollOffset)" ] || fail "the rule is still stored"
await "the end of the rule in the workbench" has_no_row "$workbench" "$rules_pane" "$renamed_rule"
picture

step list-grown "the dialog grows, and its controls follow"
drag_grip 220 160
picture

step list-reopened "it opens again where and as large as it was, now by the hot key"
bounds=$(dialog_bounds)
close_list
press ctrl+u
await_list "$rules"
expect "the position and size of the list" dialog_bounds = "$bounds"
picture
click_control "$rules_dialog" "$close_button"
await "the end of the list" window_is_closed "$rules_dialog"
