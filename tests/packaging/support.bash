# Sourced by the tests of the packages.
. "$(dirname "${BASH_SOURCE[0]}")/../support/script.bash"

# build_examples: builds the examples in C++ with the sdk of the zip alone, beside the module.
build_examples() {
  local options=(-std=c++17 -static -DUNICODE -D_UNICODE -Wall -Wextra -Wpedantic -Werror "-I$module/sdk")
  local libraries=(-lole32 -loleaut32 -luuid)
  x86_64-w64-mingw32-g++-posix "${options[@]}" "$module/examples/host/main.cpp" -o "$module/minimal-host.exe" "${libraries[@]}"
  x86_64-w64-mingw32-g++-posix "${options[@]}" "$module/examples/type-library/main.cpp" -o "$module/print-type-library.exe" "${libraries[@]}"
}

# drive_host WINDOW ARGUMENTS... -- KEYS...: starts the smallest host of the current folder, waits for its dialog, presses
# the keys, prints what it says.
drive_host() {
  local window=$1 arguments=() process
  shift
  while [ "$1" != -- ]; do arguments+=("$1"); shift; done
  shift
  windows minimal-host.exe "${arguments[@]}" >"$scratch/said" &
  process=$!
  await "$window" window_is_open "$window"
  sleep 1
  while [ $# -gt 0 ]; do
    if [ "$1" = type ]; then xdotool type "$2"; shift; else xdotool key "$1"; fi
    shift
  done
  wait $process || fail "the smallest host ends with $?"
  tr -d '\r' <"$scratch/said"
}

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
