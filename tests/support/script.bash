# Sourced by the tests that are shell scripts. They end at the first thing that is not as it should be. `scratch` is a
# folder of their own, which is deleted at the end.
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
. "$project/tools/build-folder"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() { echo "FAILED: $*" >&2; exit 1; }
say() { echo "== $*"; }
windows() { "$project/tools/wine-run" "$@"; }
windows_path() { echo "Z:${1//\//\\}"; }

# workbench-console ARGUMENT...: of the programs in the folder `programs`, in English.
workbench-console() { windows "$programs/workbench-console.exe" --language en "$@"; }

# expect WHAT WANTED SEEN
expect() { [ "$2" = "$3" ] || fail "$1: expected"$'\n'"$2"$'\n'"and it is"$'\n'"$3"; }

# refuses WHAT PATTERN COMMAND...: the command fails, and what it writes matches the pattern.
refuses() {
  local what=$1 pattern=$2 said
  shift 2
  ! said=$("$@" 2>&1) || fail "$what is not refused"
  grep -qE -- "$pattern" <<<"$said" || fail "$what is refused with other words: $said"
}

# await WHAT COMMAND...: waits until the command succeeds.
await() {
  local what=$1 deadline=$((SECONDS + 90))
  shift
  until "$@" >/dev/null 2>&1; do
    ((SECONDS < deadline)) || fail "waited in vain for $what"
    sleep 0.2
  done
}

window_is_open() { xdotool search --onlyvisible --name "^$1\$"; }

# read_screen ...: what the session's display shows, as workbench/tour/main.cpp prints it.
read_screen() { windows "$build/release/bin/screen-reader.exe" "$@" | tr -d '\r'; }

# box_text TITLE: the text of the message box.
box_text() { read_screen controls "$1" | awk -F '\t' '$2 == "Static" && $8 != "" { print $8 }'; }
