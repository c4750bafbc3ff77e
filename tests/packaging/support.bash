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
