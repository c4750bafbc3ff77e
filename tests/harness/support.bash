# Loaded by the shell tests of the harness.
project=$(cd "$BATS_TEST_DIRNAME/../.." && pwd)
tools=$project/tools

# expect PATTERN: the output has a line that matches.
expect() { grep -qE -- "$1" <<<"$output" || { echo "no line '$1' in:"; echo "$output"; return 1; }; }
