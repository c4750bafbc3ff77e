# Sourced by the tour: from the start of the workbench to a rule that is changed in the editor.

readonly rule="SHFE copper"
sentence() { echo "合约换月于指定日前 $1 交易日  指定日为 第15 天， 当月 或者 下一个 交易日"; }

step start "the workbench starts with a new store, loads the module and initialises it"
start_workbench
expect "the message" status_message = "插件已加载"
rules=$(print_rules | tail -n +2 | wc -l)
[ "$rules" -gt 0 ] || fail "the new store is empty"
expect "the number of rules" status_count = "$rules 条规则"
expect "the rows of the rules pane" row_count "$workbench" "$rules_pane" = "$rules"
expect "the copper rule's day" row_cell "$workbench" "$rules_pane" "$rule" 4 = "当月第 15 天"
expect "the rule of a setting" row_cell "$workbench" "$settings_pane" "CU 沪铜 主力连续" 2 = "$rule"
picture

step menu "the main menu shows the module's command"
open_plugin_menu
expect "the menu's hint" status_message = "查看和管理期货合约的到期规则"
picture
press Escape Escape
await "the end of the menu" menu_is_closed

step editor "a double-click on a rule opens the editor through Show"
open_rule "$rule"
expect "the workbench" window_state "$workbench" = disabled
expect_offset 0 "$(sentence 0)"
picture

step offset-typed "the description follows a typed offset"
replace_text "$editor" "$offset_edit" 12
expect_offset 12 "$(sentence 12)"
picture

# The key comes before the mouse: see "up-down" in docs/test-platform-differences.md.
step offset-spun "the description follows the spin, by arrow key and by mouse"
press Up
expect_offset 13 "$(sentence 13)"
spin_up
spin_up
expect_offset 15 "$(sentence 15)"
spin_down
expect_offset 14 "$(sentence 14)"
picture

step saved "OK stores the change, and the pane shows it"
[ "$(stored "$rule" RollOffset)" = 0 ] || fail "the store changed before OK"
accept_editor
expect "the stored offset" stored "$rule" RollOffset = 14
expect "the offset in the pane" row_cell "$workbench" "$rules_pane" "$rule" 3 = "提前 14 个交易日"
expect "the row's state" row_state "$workbench" "$rules_pane" "$rule" = selected,focused
picture

step name-refused "a name with a bad character is refused with a message"
before=$(print_rules)
press Return
await "the editor, opened by Enter" window_is_open "$editor"
expect_refusal "$editor" "SHFE-copper" "$name_refused"
picture
dismiss_refusal "$editor"

step name-taken "the name of another rule is refused"
expect_refusal "$editor" "COMEX gold" "$name_taken"
picture
dismiss_refusal "$editor"

step name-empty "an empty name is refused"
expect_refusal "$editor" "" "$name_empty"
picture
dismiss_refusal "$editor"

step cancelled "Cancel changes nothing"
replace_text "$editor" "$name_edit" "SHFE copper changed"
replace_text "$editor" "$offset_edit" 99
expect_offset 99 "$(sentence 99)"
cancel_editor
[ "$(print_rules)" = "$before" ] || fail "the store changed although the editor was cancelled"
expect "the offset in the pane" row_cell "$workbench" "$rules_pane" "$rule" 3 = "提前 14 个交易日"
picture
