# Sourced by the tour: the rule editor.

editor=$(module_text IDS_EDIT_RULE_TITLE)
new_rule_editor=$(module_text IDS_ADD_RULE_TITLE)
box=$(module_text IDS_CAPTION)
readonly name_edit=207 offset_edit=210 offset_spin=211 description=224 ok_button=1 cancel_button=2

name_refused=$(module_text IDS_NAME_BAD_CHARACTER)
name_empty=$(module_text IDS_NAME_EMPTY)
name_taken=$(module_text IDS_NAME_NOT_UNIQUE)
readonly editor new_rule_editor box name_refused name_empty name_taken

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
