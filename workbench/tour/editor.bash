# Sourced by the tour: the rule editor.

readonly editor="编辑到期规则" new_rule_editor="添加到期规则" box="到期规则"
readonly name_edit=207 offset_edit=210 offset_spin=211 description=224 ok_button=1 cancel_button=2

readonly name_refused="名称只允许包括数字，字母和空格。"
readonly name_empty="名称不能为空。"
readonly name_taken="该名称的到期规则已存在。"

# spin_up / spin_down [TITLE]: one click on an arrow of the offset's spin.
spin_up() { click_control "${1:-$editor}" "$offset_spin" 0 -5; }
spin_down() { click_control "${1:-$editor}" "$offset_spin" 0 5; }

expect_offset() {
  expect "the offset" control_text "$editor" "$offset_edit" = "$1"
  expect "the description" control_text "$editor" "$description" = "$2"
}

accept_editor() {
  click_control "${1:-$editor}" "$ok_button"
  await "the end of the editor" window_is_closed "${1:-$editor}"
}

cancel_editor() {
  press Escape
  await "the end of the editor" window_is_closed "${1:-$editor}"
}

# expect_refusal TITLE NAME MESSAGE: types a name, presses OK, and sees it refused. The message stays open.
expect_refusal() {
  replace_text "$1" "$name_edit" "$2"
  click_control "$1" "$ok_button"
  await "the message \"$3\"" shows_text "$box" "$3"
}

# dismiss_refusal TITLE: closes the message; the editor is still there, with the focus on the name.
dismiss_refusal() {
  press Return
  await "the end of the message" window_is_closed "$box"
  await "the focus on the name" has_focus "$1" "$name_edit"
}
