# Sourced by the tests of the packages: they end at the first thing that is not as it should be.
project=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() { echo "FAILED: $*" >&2; exit 1; }
say() { echo "== $*"; }
windows() { "$project/tools/wine-run" "$@"; }
windows_path() { echo "Z:${1//\//\\}"; }

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

# read_screen ...: what tools/session's display shows, as workbench/tour/main.cpp prints it.
read_screen() { windows "${ZD_BUILD:-$project/build}/release/bin/screen-reader.exe" "$@" | tr -d '\r'; }

# box_text TITLE: the text of the message box.
box_text() { read_screen controls "$1" | awk -F '\t' '$2 == "Static" && $8 != "" { print $8 }'; }

# unpack PACKAGES: unpacks the zips into the current folder, and sets packages, version, and the folders of their contents:
# module, workbench and symbols.
unpack() {
  local zip
  packages=$(realpath "$1")
  zip=$(cd "$packages" && ls zdExpirationRules-[0-9]*-x64.zip)
  version=${zip#zdExpirationRules-}
  version=${version%-x64.zip}
  for zip in "$packages"/*.zip; do unzip -q "$zip"; done
  module=$PWD/zdExpirationRules-$version-x64
  workbench=$PWD/zdExpirationRules-workbench-$version-x64
  symbols=$PWD/zdExpirationRules-symbols-$version-x64
}
