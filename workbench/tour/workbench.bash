# Sourced by the tour: the reference host's own window, and the store behind it.

readonly workbench="到期规则工作台"
readonly rules_pane=201 settings_pane=202 status_bar=203

start_workbench() {
  start_program workbench.exe --language zh --store "$(windows_path "$store")" "$@"
  workbench_process=$!
  await "the workbench's window" window_is_open "$workbench"
}

# quit_workbench: closes it with the keyboard and checks that it ends well.
quit_workbench() {
  press alt+F4
  await "the end of the workbench" window_is_closed "$workbench"
  local status=0
  wait "$workbench_process" || status=$?
  workbench_process=
  [ "$status" = 0 ] || fail "the workbench ended with code $status"
}

status_message() { read_screen parts "$workbench" "$status_bar" | sed -n 1p; }
status_count() { read_screen parts "$workbench" "$status_bar" | sed -n 2p; }

# Menus belong to their process; what others can see of an open one is its window.
menu_is_open() { read_screen windows | cut -f 2 | grep -qxF '#32768'; }
menu_is_closed() { ! menu_is_open; }

open_plugin_menu() {
  press alt+r
  await "the plug-in's menu" menu_is_open
}

# print_rules: what the store holds, under a line of field names.
print_rules() { run_program workbench.exe --store "$(windows_path "$store")" --print-rules | tr -d '\r'; }

# stored RULE FIELD: one value of the rule of this name in the store; nothing when there is no such rule.
stored() {
  print_rules | awk -F '\t' -v name="$1" -v field="$2" '
    NR == 1 { for (i = 1; i <= NF; ++i) column[$i] = i }
    NR > 1 && $column["RuleName"] == name { print $column[field] }'
}

# open_rule RULE: double-click on a rule in the pane.
open_rule() {
  open_row "$workbench" "$rules_pane" "$1" "$editor"
  expect "the rule's name" control_text "$editor" "$name_edit" = "$1"
}
