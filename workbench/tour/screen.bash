# Sourced by the tour: real keyboard and mouse, what the screen shows, pictures, and expectations that fail loudly.
# Everything here works on any window; TITLE is a window's title and ID a control's identifier.

readonly timeout_s=60

say() { echo "== $*"; }

# fail REASON: leaves a picture of the screen as it is, says where it is, and ends the tour.
fail() {
  take_picture failed
  {
    echo "tour: $step: $*"
    echo "tour: the screen is in $pictures/failed.png; its windows are:"
    read_screen windows
  } >&2
  exit 1
}

# step NAME WHAT: begins a step. Its picture will be called NN-NAME.png.
step() {
  step_number=$((step_number + 1))
  step=$(printf '%02d-%s' "$step_number" "$1")
  say "$step: $2"
}
step_number=0
step=

# The black ground around the windows is cut away. The pause lets the last drawing finish.
take_picture() {
  sleep 0.4
  import -window root png:- | convert - -trim +repage "$pictures/$1.png"
}
picture() { take_picture "$step"; }

# read_screen windows | controls TITLE | rows TITLE ID | parts TITLE ID: lines of values between tabs.
read_screen() { run_program screen-reader.exe "$@"; }

# await WHAT COMMAND...: waits until the command succeeds.
await() {
  local what=$1 deadline=$((SECONDS + timeout_s))
  shift
  until "$@"; do
    ((SECONDS < deadline)) || fail "waited $timeout_s s in vain for $what"
    sleep 0.1
  done
}

# expect WHAT COMMAND... = TEXT: waits until the command prints the text.
expect() {
  local what=$1 wanted=${*: -1} seen deadline=$((SECONDS + timeout_s))
  local command=("${@:2:$#-3}")
  until seen=$("${command[@]}") && [ "$seen" = "$wanted" ]; do
    ((SECONDS < deadline)) || fail "$what is \"$seen\" and should be \"$wanted\""
    sleep 0.1
  done
}

# Windows.

window_is_open() { read_screen windows | cut -f 1 | grep -qxF -- "$1"; }
window_is_closed() { ! window_is_open "$1"; }
window_state() { read_screen windows | awk -F '\t' -v title="$1" '$1 == title { print $7; exit }'; }

# Controls. The values of one: class, x, y, width, height, state, text.

control() { read_screen controls "$1" | awk -F '\t' -v id="$2" '$1 == id { print; exit }'; }
control_text() { control "$1" "$2" | cut -f 8; }
control_state() { control "$1" "$2" | cut -f 7; }
has_control() { [ -n "$(control "$1" "$2")" ]; }

has_focus() { [[ $(control_state "$1" "$2") == *focused* ]]; }

# texts TITLE: the texts of every static control, one a line.
texts() { read_screen controls "$1" | awk -F '\t' '$2 == "Static" && $8 != "" { print $8 }'; }
shows_text() { texts "$1" | grep -qxF -- "$2"; }

# Lists. The values of a row: x, y, width, height, state, cells.

row_with() { read_screen rows "$1" "$2" | awk -F '\t' -v text="$3" '{ for (i = 6; i <= NF; ++i) if ($i == text) { print; exit } }'; }
has_row() { [ -n "$(row_with "$1" "$2" "$3")" ]; }
has_no_row() { ! has_row "$@"; }
row_cell() { row_with "$1" "$2" "$3" | cut -f $((5 + $4)); }
row_state() { row_with "$1" "$2" "$3" | cut -f 5; }
row_count() { read_screen rows "$1" "$2" | grep -c ''; }

# Keyboard and mouse.

# The one enabled window: dialogs disable the windows below them. An open menu leaves the keyboard to its window.
enabled_window() { read_screen windows | awk -F '\t' '$7 ~ /enabled/ && $2 != "#32768" { print $1; exit }'; }

# The window manager gives the keyboard to a window some time after that has opened, and keys are lost until then.
keyboard_is_there() { [ "$(xdotool getwindowfocus getwindowname 2>/dev/null)" = "$(enabled_window)" ]; }
await_keyboard() { await "the keyboard focus at the enabled window" keyboard_is_there; }

press() {
  await_keyboard
  xdotool key --clearmodifiers --delay 60 "$@"
}

type_text() {
  await_keyboard
  xdotool type --clearmodifiers --delay 40 -- "$1"
}

# click_at X Y [COUNT]
click_at() { xdotool mousemove "$1" "$2" click --repeat "${3:-1}" --delay 80 1; }

# click_control TITLE ID [DX DY]: clicks its middle, or a point beside the middle.
click_control() {
  local id class x y width height rest
  await "control $2 in \"$1\"" has_control "$1" "$2"
  IFS=$'\t' read -r id class x y width height rest < <(control "$1" "$2") || fail "control $2 left \"$1\""
  click_at $((x + width / 2 + ${3:-0})) $((y + height / 2 + ${4:-0}))
}

# click_row TITLE ID TEXT [COUNT]: clicks the row with a cell of this text, which must be in sight.
click_row() {
  local x y width height rest
  await "row \"$3\" in list $2 of \"$1\"" has_row "$1" "$2" "$3"
  IFS=$'\t' read -r x y width height rest < <(row_with "$1" "$2" "$3") || fail "row \"$3\" left \"$1\""
  click_at $((x + 60)) $((y + height / 2)) "${4:-1}"
}

# open_row TITLE ID TEXT WINDOW: double-clicks the row until the window opens: clicks that a busy machine hands on one by
# one make no double click. A window that is disabled has taken them and is about to open the other.
open_row() {
  local deadline=$((SECONDS + timeout_s)) moment
  while ((SECONDS < deadline)); do
    [ "$(window_state "$1")" = disabled ] || click_row "$1" "$2" "$3" 2
    for moment in {1..30}; do
      if window_is_open "$4"; then return; fi
      sleep 0.1
    done
  done
  fail "\"$4\" is not opened by a double click on \"$3\""
}

# replace_text TITLE ID TEXT: clicks into an edit, selects what is there and types over it.
replace_text() {
  click_control "$1" "$2"
  await "the focus on control $2 of \"$1\"" has_focus "$1" "$2"
  press Home shift+End
  if [ -n "$3" ]; then type_text "$3"; else press Delete; fi
}
