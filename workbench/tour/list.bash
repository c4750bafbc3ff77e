# Sourced by the tour: the list of expiration rules. Its message boxes bear its own title and stand before it.

readonly rules_dialog="到期规则"
readonly rules_list=201 add_button=202 edit_button=203 delete_button=204 close_button=2
readonly yes_button=6 no_button=7

rule_in_use=$(module_text IDS_RULE_IN_USE)
delete_question_format=$(module_text IDS_CONFIRM_DELETE)
readonly rule_in_use delete_question_format
delete_question() { echo "${delete_question_format/\%s/"$1"}"; }

# dialog_bounds: x, y, width, height of the dialog. A message box before it has no list and is not meant.
dialog_bounds() { read_screen windows | awk -F '\t' -v title="$rules_dialog" '$1 == title { print $3, $4, $5, $6; exit }'; }
dialog_size() { dialog_bounds | cut -d ' ' -f 3,4; }

# forget_placement: the list will open as for the first time. There is nothing to forget in a new prefix.
forget_placement() {
  "$project/tools/wine-run" reg delete 'HKCU\Software\zdExpirationRules Project\Workbench\Windows Placement' /f \
    >/dev/null 2>&1 || true
}

in_list() { "$1" "$rules_dialog" "$rules_list" "${@:2}"; }

await_list() {
  await "the list of rules" has_control "$rules_dialog" "$rules_list"
  expect "the rows of the list" in_list row_count = "$1"
}

close_list() {
  press Escape
  await "the end of the list" window_is_closed "$rules_dialog"
}

# select_rule RULE: a click on a row that is in sight.
select_rule() {
  in_list click_row "$1"
  expect "the state of \"$1\"" in_list row_state "$1" = selected,focused
}

await_message() { await "the message \"$1\"" shows_text "$rules_dialog" "$1"; }
await_no_message() { await "the end of the message \"$1\"" message_is_gone "$1"; }
message_is_gone() { ! shows_text "$rules_dialog" "$1"; }

# drag_grip DX DY: takes the dialog at its size grip and drags it. Moves that come before the window manager has taken
# hold are not seen, so the mouse goes on until the dialog follows.
drag_grip() {
  local x y width height size deadline=$((SECONDS + timeout_s))
  read -r x y width height < <(dialog_bounds)
  size=$(dialog_size)
  x=$((x + width - 9)) y=$((y + height - 9))
  xdotool mousemove "$x" "$y" mousedown 1
  until size_is_not "$size"; do
    ((SECONDS < deadline)) || fail "the dialog does not follow the mouse"
    xdotool mousemove --sync $((x + $1 / 2)) $((y + $2 / 2))
    xdotool mousemove --sync $((x + $1)) $((y + $2))
  done
  xdotool mouseup 1
  expect "the size" dialog_size = "$((width + $1)) $((height + $2))"
}

size_is_not() { [ "$(dialog_size)" != "$1" ]; }
