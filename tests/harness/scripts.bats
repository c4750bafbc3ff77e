#!/usr/bin/env bats
# The scripts that a person starts, and what they stand on.

bats_require_minimum_version 1.5.0
# shellcheck source=support.bash
. "$BATS_TEST_DIRNAME/support.bash"

# program FILE TEXT: a program that does the shell commands of the text.
program() {
  printf '#!/usr/bin/env bash\n%s\n' "$2" >"$1"
  chmod +x "$1"
}

# --- session ---

@test "a session has a display, no window manager, and passes the exit code on" {
  run -0 env -u ZD_SESSION "$tools/session" --virtual xdotool getdisplaygeometry
  expect '^[0-9]+ [0-9]+$'
  run -1 env -u ZD_SESSION "$tools/session" --virtual xdotool get_num_desktops
  run -7 env -u ZD_SESSION "$tools/session" --virtual "$tools/window-manager" bash -c "xdotool get_num_desktops && exit 7"
  expect '^[0-9]+$'
}

# The folder of the build has spaces, as every prefix below it then has.
@test "a session creates an unfinished prefix again, and a program runs in it" {
  local build="$BATS_TEST_TMPDIR/out of tree"
  local prefix=$build/wine
  mkdir -p "$prefix/drive_c"
  touch "$prefix/.unfinished" "$prefix/system.reg"
  ZD_BUILD=$build run -0 env -u ZD_SESSION -u ZD_WINEPREFIX "$tools/session" --virtual "$tools/wine-run" cmd /c "echo it runs"
  expect 'removing an unfinished Wine prefix'
  expect 'it runs'
  [ -e "$prefix/.ready" ]
  [ ! -e "$prefix/.unfinished" ]
}

# session_of_a_new_prefix NUMBER: its first attempts at creating the prefix, so many, fail.
session_of_a_new_prefix() {
  local programs=$BATS_TEST_TMPDIR/programs
  mkdir "$programs"
  program "$programs/wineserver" ''
  program "$programs/wine" "[ \"\$1\" != wineboot ] || { echo \"attempt\" >>'$programs/log'; [ \$(wc -l <'$programs/log') -gt $1 ]; }"
  PATH=$programs:$PATH ZD_BUILD=$BATS_TEST_TMPDIR/build run env -u ZD_SESSION -u ZD_WINEPREFIX "$tools/session" --virtual echo "it runs"
}

@test "a session creates a prefix again when the first attempt fails" {
  session_of_a_new_prefix 1
  [ "$status" = 0 ]
  expect '^it runs$'
}

@test "a session fails when no attempt creates the prefix" {
  session_of_a_new_prefix 2
  [ "$status" = 1 ]
  expect 'session: wineboot failed'
}

@test "a session leaves the prefix and the overrides of the user alone" {
  local users=$BATS_TEST_TMPDIR/users
  mkdir "$users"
  echo "WINE REGISTRY Version 2" >"$users/system.reg"
  before=$(find "$users" -printf '%p %s %T@\n' | sort)
  # shellcheck disable=SC2016 # the session's own values
  run -0 env -u ZD_SESSION WINEPREFIX="$users" WINEDLLOVERRIDES=d3d11=native "$tools/session" \
    bash -c 'echo "inside: $WINEPREFIX $WINEDLLOVERRIDES"'
  [[ $output != *users* && $output != *d3d11* ]]
  [ "$before" = "$(find "$users" -printf '%p %s %T@\n' | sort)" ]
}

@test "two sessions have a display and a prefix each, and a command is run in the second one" {
  local build=$BATS_TEST_TMPDIR/build session
  # Prefixes that are ready, and no Windows program in them.
  mkdir -p "$build"/wine{,-second} "$BATS_TEST_TMPDIR/programs"
  for session in wine wine-second; do cp "$tools/wine-prefix.reg" "$build/$session/.ready"; done
  for session in wine wineserver; do program "$BATS_TEST_TMPDIR/programs/$session" ''; done
  # shellcheck disable=SC2016 # the sessions' own values
  local say='. "$1/wine-environment"; echo "$DISPLAY $WINEPREFIX ${on_processor[*]}"'
  PATH=$BATS_TEST_TMPDIR/programs:$PATH ZD_PROCESSOR=first ZD_BUILD=$build run -0 env -u ZD_SESSION -u ZD_WINEPREFIX \
    "$tools/two-sessions" bash -c "$say; \"\$1/second-session\" bash -c '$say' - \"\$1\"" - "$tools"
  local processors
  processors=$(taskset --cpu-list --pid $$)
  processors=${processors##*: }
  [[ ${lines[0]} = :*" $build/wine taskset --cpu-list ${processors%%[,-]*}" ]]
  [[ ${lines[1]} = :*" $build/wine-second taskset --cpu-list ${processors##*[,-]}" ]]
  [ "${lines[0]%% *}" != "${lines[1]%% *}" ]
}

# --- prepare: into the folder that the test names, whatever the user who runs the tests builds into ---

# prepare_without_packages [SUDO]: as if nothing were installed, for a user who is not root and has no sudo, or one that
# does the shell commands.
prepare_without_packages() {
  local programs=$BATS_TEST_TMPDIR/programs name
  local -x ZD_BUILD=
  mkdir "$programs"
  for name in bash dirname mktemp rm sort sed comm xargs echo env; do ln -s "$(type -P $name)" "$programs/"; done
  program "$programs/id" 'echo 1000'
  program "$programs/dpkg-query" 'exit 1'
  program "$programs/apt-get" 'exit 1'
  [ $# = 0 ] || program "$programs/sudo" "$1"
  PATH=$programs run -1 "$(type -P bash)" "$tools/prepare" "${depth:-run}" </dev/null
}

@test "prepare names the missing packages where it cannot install them" {
  prepare_without_packages
  expect 'packages are missing, as root run: apt-get install .*g\+\+-mingw'
}

# needs DEPTH PACKAGE...: prints those of the packages that a machine needs for that depth.
needs() {
  local depth=$1
  shift
  rm -rf "$BATS_TEST_TMPDIR/programs"
  prepare_without_packages
  printf '%s\n' "$@" | grep -xF "$(tr ' ' '\n' <<<"$output")" | xargs
}

@test "running needs no test tools, the tests no deep ones, and packaging no analysers" {
  local packages=(g++-mingw-w64-x86-64-posix wine googletest bats clang-tidy clang-format cppcheck gcovr clang shellcheck
    postgresql chromium libquantlib0-dev wixl osslsigncode)
  [ "$(needs run "${packages[@]}")" = "g++-mingw-w64-x86-64-posix wine" ]
  [ "$(needs peers "${packages[@]}")" = "g++-mingw-w64-x86-64-posix wine libquantlib0-dev" ]
  [ "$(needs quick "${packages[@]}")" = "g++-mingw-w64-x86-64-posix wine googletest bats clang-tidy clang-format" ]
  [ "$(needs package "${packages[@]}")" = "g++-mingw-w64-x86-64-posix wine wixl osslsigncode" ]
  [ "$(needs deep "${packages[@]}")" = "${packages[*]}" ]
}

@test "prepare names the missing packages where sudo refuses" {
  prepare_without_packages 'exit 1'
  expect 'packages are missing, as root run: apt-get install .*g\+\+-mingw'
}

@test "prepare names the missing packages when the lists cannot be read" {
  # shellcheck disable=SC2016 # expanded by the program
  prepare_without_packages '[ "$2" = true ]'
  expect 'the package lists cannot be read.* g\+\+-mingw'
}

# prepare_elsewhere [PROGRAM...]: a copy of prepare on a machine without Debian's tools but with these programs, which
# write what they are called with, at once: two of them run side by side.
prepare_elsewhere() {
  local programs=$BATS_TEST_TMPDIR/elsewhere copy=$BATS_TEST_TMPDIR/copy name
  local -x ZD_BUILD=${folder:-}
  rm -rf "$programs" "$copy"
  mkdir -p "$programs" "$copy/tools"
  cp "$tools"/{prepare,build-folder} "$copy/tools"
  for name in bash dirname basename mktemp rm env realpath; do ln -s "$(type -P $name)" "$programs/"; done
  # shellcheck disable=SC2016 # expanded by the programs
  for name in "$copy/tools/session" "${@/#/$programs/}"; do
    program "$name" 'printf -v line " <%s>" "$@"; echo "$(basename "$0")$line"'
  done
  PATH=$programs run "$(type -P bash)" "$copy/tools/prepare" "${depth:-run}" </dev/null
}

# prepare_with_apt OS_RELEASE [PROGRAM...]: the same for a user who is not root and has no sudo, with Debian's tools on a
# system that says what it is.
prepare_with_apt() {
  local release=$BATS_TEST_TMPDIR/os-release name
  local -x ZD_BUILD=
  printf '%s\n' "$1" >"$release"
  shift
  prepare_elsewhere "$@"
  for name in sort sed comm xargs echo; do ln -s "$(type -P $name)" "$BATS_TEST_TMPDIR/elsewhere/"; done
  program "$BATS_TEST_TMPDIR/elsewhere/id" 'echo 1000'
  program "$BATS_TEST_TMPDIR/elsewhere/dpkg-query" 'exit 1'
  program "$BATS_TEST_TMPDIR/elsewhere/apt-get" 'exit 1'
  sed -i "s|/etc/os-release|'$release'|" "$BATS_TEST_TMPDIR/copy/tools/prepare"
  PATH=$BATS_TEST_TMPDIR/elsewhere run "$(type -P bash)" "$BATS_TEST_TMPDIR/copy/tools/prepare" run </dev/null
}

needed_programs=(x86_64-w64-mingw32-windres x86_64-w64-mingw32-widl cmake ninja perl wine wineserver Xvfb openbox xdotool
  import convert)

@test "prepare goes on where the programs are there, whatever installed them" {
  local compiler
  for compiler in x86_64-w64-mingw32-g++ x86_64-w64-mingw32-g++-posix; do
    prepare_elsewhere "${needed_programs[@]}" $compiler
    [ "$status" = 0 ]
    expect '^cmake <--preset> <release> <-B> <[^>]*/build/release>'
  done
}

@test "prepare warns and goes on where packages are missing, cannot be installed, and no program is missing" {
  prepare_with_apt 'ID=debian' "${needed_programs[@]}" x86_64-w64-mingw32-g++
  [ "$status" = 0 ]
  expect '^== warning: packages are missing, as root run: apt-get install .*it continues'
  expect '^cmake <--preset> <release>'
}

@test "prepare takes the packages of Debian and of its derivatives alone" {
  prepare_with_apt 'ID=ubuntu
ID_LIKE="debian"'
  [ "$status" = 1 ]
  expect 'packages are missing, as root run: apt-get install'
  prepare_with_apt 'ID=fedora'
  [ "$status" = 1 ]
  expect "this is not Debian, and these programs are missing: "
  expect "^download SQLite's amalgamation, 3.40.1 or later"
}

@test "prepare hands on where SQLite's amalgamation lies" {
  ZD_SQLITE_AMALGAMATION="/my folder" prepare_elsewhere "${needed_programs[@]}" x86_64-w64-mingw32-g++
  expect '<-DZD_SQLITE_AMALGAMATION=/my folder>$'
}

@test "prepare names the missing programs and the packages of each family" {
  prepare_elsewhere "${needed_programs[@]}" dnf
  [ "$status" = 1 ]
  expect 'programs are missing: x86_64-w64-mingw32-g\+\+-posix or x86_64-w64-mingw32-g\+\+; on Fedora.* dnf install .*mingw64-gcc-c\+\+'
  prepare_elsewhere "${needed_programs[@]}" x86_64-w64-mingw32-g++ pacman
  [ "$status" = 0 ]
  prepare_elsewhere pacman
  expect 'missing: .* convert; on Arch.* pacman -S .*mingw-w64-gcc'
  prepare_elsewhere zypper
  expect 'on openSUSE.* zypper install .*mingw64-cross-gcc-c\+\+'
  prepare_elsewhere
  expect "equivalents of Debian's gcc-mingw"
  depth=quick prepare_elsewhere "${needed_programs[@]}" x86_64-w64-mingw32-g++ clang-format clang-tidy git
  expect "missing: bats; install the equivalents of Debian's .* googletest"
  depth=package prepare_elsewhere "${needed_programs[@]}" x86_64-w64-mingw32-g++ zip unzip wixl msibuild pandoc osslsigncode openssl python3
  expect "missing: git; install the equivalents of Debian's .* wixl"
}

# --- run, on a machine where everything is prepared ---

# stubs STATUS: a copy of the scripts among tools that write what they are called with, each at once; only the display :there exists,
# and a session ends with the status.
stubs() {
  tree="$BATS_TEST_TMPDIR/the tree"
  mkdir -p "$tree"/{tools,programs}
  cp "$project"/{run,test} "$tree"
  cp "$tools"/{build-folder,two-sessions} "$tree/tools"
  chmod -R u+w "$tree"
  unset ZD_BUILD
  # shellcheck disable=SC2016 # expanded by the programs
  {
    local say='printf -v line " <%s>" "$@"; echo "$(basename "$0")$line"'
    program "$tree/tools/prepare" "$say"
    program "$tree/tools/print-versions" "$say"
    program "$tree/tools/session" "$say; exit $1"
    program "$tree/programs/cmake" "$say"
    program "$tree/programs/xdotool" '[ "$DISPLAY" = :there ]'
  }
  PATH=$tree/programs:$PATH
  cd "$tree" || return
}

@test "run starts the workbench on the display that is there, with its arguments and its exit code" {
  stubs 3
  DISPLAY=:there run -3 ./run --store "my rules.db"
  expect '^session <[^>]*/tools/wine-run> <[^>]*/bin/workbench.exe> <--store> <my rules.db>$'
}

@test "run plays the tour where no display is there or it does not answer" {
  stubs 0
  DISPLAY='' run -0 ./run
  expect '^session <--virtual> <[^>]*/tools/window-manager> <[^>]*/workbench/tour/play>$'
  DISPLAY=:gone run -0 ./run
  expect '^session <--virtual> <[^>]*/tools/window-manager> <[^>]*/workbench/tour/play>$'
}

@test "run refuses to open a window without a display, and does what needs none" {
  stubs 0
  DISPLAY='' run -2 ./run --store a
  expect '^run: these arguments need a display'
  local argument
  for argument in --help --version --print-rules --schedule-all --find-rule --import --export --calendars --import-calendar \
    --copy-to --schedule --check; do
    DISPLAY='' run -0 ./run --store a $argument
    expect "^session <--virtual> .*workbench.exe> <--store> <a> <$argument>$"
  done
}

# --- the build folder ---

@test "run works in the folder that ZD_BUILD names, as seen by the caller" {
  stubs 0
  cd "$BATS_TEST_TMPDIR" || return
  DISPLAY=:there ZD_BUILD="out of tree" run -0 "$tree/run"
  expect "^cmake <--build> <$BATS_TEST_TMPDIR/out of tree/release> "
  expect "^session .*<$BATS_TEST_TMPDIR/out of tree/release/bin/workbench.exe>$"
  DISPLAY='' ZD_BUILD="out of tree" run -0 "$tree/run"
  expect "^session .*/workbench/tour/play>$"
  [ ! -e "$tree/build" ]
}

@test "test works in the folder that ZD_BUILD names, as seen by the caller, and fails when the summary does" {
  stubs 0
  # shellcheck disable=SC2016 # expanded by the programs
  {
    program "$tree/tools/two-sessions" '"$@"'
    program "$tree/programs/ctest" 'printf -v line " <%s>" "$@"; echo "ctest$line"'
    program "$tree/tools/summarise-tests" 'echo "summary of $1"; exit 1'
  }
  cd "$BATS_TEST_TMPDIR" || return
  ZD_BUILD="out of tree" run -1 "$tree/test"
  expect "^cmake <--build> <$BATS_TEST_TMPDIR/out of tree/release> "
  expect "^ctest <--test-dir> <$BATS_TEST_TMPDIR/out of tree/release> "
  expect "^summary of $BATS_TEST_TMPDIR/out of tree/release/Testing/"
  [ ! -e "$tree/build" ]
}

@test "prepare and the Wine prefix keep to the folder that ZD_BUILD names" {
  folder="$BATS_TEST_TMPDIR/out of tree" prepare_elsewhere "${needed_programs[@]}" x86_64-w64-mingw32-g++
  expect "^cmake .*<-B> <$BATS_TEST_TMPDIR/out of tree/release>"
  # shellcheck disable=SC2016 # expanded by the other shell
  run env -u ZD_WINEPREFIX ZD_BUILD="$BATS_TEST_TMPDIR/out of tree" bash -c '. "$1/wine-environment"; echo "$WINEPREFIX"' - "$tools"
  [ "$output" = "$BATS_TEST_TMPDIR/out of tree/wine" ]
}

# chosen TEST...: which of these tests the pattern selects that ctest was called with.
chosen() {
  printf '%s\n' "$@" | grep -E "$(sed -n 's/.*<--tests-regex> <\([^>]*\)>.*/\1/p' <<<"$output")" | xargs
}

@test "test builds and runs only what the name needs" {
  stubs 0
  program "$tree/tools/summarise-tests" ''
  mkdir -p "$tree/build/release"
  printf '%s\n' 'list list quick list_tests' 'list_scale list quick list_scale_tests' \
    'list_server list deep list_server_tests' 'editor src quick editor_tests' 'native native deep native_tests' \
    'gates gates quick zdExpirationRules generated' >"$tree/build/release/test-names"
  run -0 ./test list
  expect '^prepare <quick>$'
  expect '^cmake .*<--target> <list_tests> <list_scale_tests>$'
  [ "$(chosen list list.screen list_scale list_more editor)" = "list list.screen list_scale" ]
  expect 'label-exclude> <\^deep\$>'
  run -0 ./test --deep editor
  expect '^prepare <deep>$'
  expect '^cmake .*<--target> <editor_tests>$'
  [[ $output != *label-exclude* ]]
  run -0 ./test --deep list
  expect '^cmake <--build> <[^>]*> <--target> <list_tests> <list_scale_tests> <list_server_tests>$'
  run -0 ./test --deep native
  expect '^cmake <--build> <[^>]*> <--target> <native_tests>$'
  run -0 ./test gates
  expect '^cmake <--build> <[^>]*> <--target> <zdExpirationRules> <generated>$'
  run -0 ./test
  expect '^cmake <--build> <[^>]*> <--target> <all>$'
  program "$tree/programs/cmake" 'exit 1'
  run -1 ./test list
  expect '^test: the build failed$'
  run -2 ./test nothing
  expect '^test: there is no nothing; there are:$'
  [[ $output != *cmake* ]]
  local name
  for name in native list_server; do
    run -2 ./test $name
    expect "^test: $name belongs to the deep run: ./test --deep $name\$"
    [[ $output != *building* ]]
  done
}

# --- the end of a test run ---

# summarise LINES: the summary of a log with these lines.
summarise() {
  cat >"$BATS_TEST_TMPDIR/log"
  run "$1" "$tools/summarise-tests" "$BATS_TEST_TMPDIR/log"
}

@test "the summary counts tests, names those that failed and says how many were not run, and fails with them" {
  summarise -1 <<'END'
1/4 Testing: list
2 skipped
12 passed, 0 failed
Test Passed.
2/4 Testing: editor
FAILED: Editor.Saves crashed
7 passed, 1 failed
Test Failed.
3/4 Testing: harness.scripts
ok 1 one
not ok 2 other
Test Failed.
4/4 Testing: gates.SourcesAreFormatted
Test Passed.
End testing: now
END
  expect '^NOT RUN: 2 tests of list$'
  expect '^FAILED: editor$'
  expect '^    Editor.Saves crashed$'
  expect '^    not ok 2 other$'
  [ "${lines[-1]}" = "21 passed, 2 failed" ]
}

@test "a program that ends before it counts its tests is one failed test, and no test at all is a failure" {
  summarise -1 <<'END'
1/1 Testing: list
Test Failed.
End testing: now
END
  [ "${lines[-1]}" = "0 passed, 1 failed" ]
  summarise -1 </dev/null
  [ "${lines[-1]}" = "0 passed, 0 failed" ]
}

# --- wine-test ---

# start HOW: wine-test on a program that ends with code 3: silently once and then talking (late), always silently
# (never), or talking (failing).
start() {
  cp "$tools/wine-test" "$BATS_TEST_TMPDIR"
  # shellcheck disable=SC2016 # expanded by the program
  program "$BATS_TEST_TMPDIR/wine-run" 'echo start >>"$(dirname "$0")/starts"
    case $1 in
      late) [ "$(wc -l <"$(dirname "$0")/starts")" = 1 ] && exit 3; echo "it runs" ;;
      never) exit 3 ;;
      failing) echo "it fails"; exit 3 ;;
    esac'
  run "$BATS_TEST_TMPDIR/wine-test" "$1"
  [ "$status" = "$2" ]
  [ "$(wc -l <"$BATS_TEST_TMPDIR/starts")" = "$3" ]
}

@test "a check by an analyser of another version is not run, and the summary says so" {
  program "$BATS_TEST_TMPDIR/analyser" 'echo "Debian LLVM version 14.0.6"; echo "  Optimized build."'
  run -3 "$tools/with-version" "$BATS_TEST_TMPDIR/analyser" 14 bash -c 'echo checked; exit 3'
  expect '^checked$'
  local version
  for version in 1 4 14.1 15; do
    run -0 "$tools/with-version" "$BATS_TEST_TMPDIR/analyser" $version bash -c 'echo checked; exit 3'
    expect "is 14.0.6, and the sources are held to $version\$"
    [[ $output != *checked* ]]
  done
  summarise -0 < <(printf '%s\n' '1/2 Testing: gates.Tidy' "$output" 'Test Passed.' '2/2 Testing: other' 'Test Passed.' 'End testing: now')
  expect '^NOT RUN: 1 tests of gates.Tidy$'
  expect '^1 passed, 0 failed$'
  program "$BATS_TEST_TMPDIR/analyser" 'echo "Cppcheck 2.10"'
  run -3 "$tools/with-version" "$BATS_TEST_TMPDIR/analyser" 2.10 bash -c 'exit 3'
  run -0 "$tools/with-version" "$BATS_TEST_TMPDIR/analyser" 2.1 bash -c 'exit 3'
}

# displays VERSION: the display of a session under this version of Wine, that of a test program on a desktop of its own in
# it, and that of one at the screen.
displays() {
  local programs=$BATS_TEST_TMPDIR/programs build=$BATS_TEST_TMPDIR/build
  mkdir -p "$programs" "$build/wine"
  cp "$tools/wine-prefix.reg" "$build/wine/.ready"
  program "$programs/wineserver" ''
  # shellcheck disable=SC2016 # expanded by the program
  program "$programs/wine" 'case $1 in --version) echo wine-'"$1"' ;; display) echo "$DISPLAY" ;; esac'
  # shellcheck disable=SC2016 # expanded by the inner shell
  PATH=$programs:$PATH ZD_BUILD=$build run -0 env -u ZD_SESSION -u ZD_WINEPREFIX -u ZD_SHOWS_EVERY_DESKTOP "$tools/session" --virtual \
    bash -c 'echo "$DISPLAY"; for part in offscreen screen; do ZD_TEST_PART=$part "$1/wine-test" display; done' - "$tools"
}

@test "test programs beside each other share a display that shows one desktop" {
  displays 8.0
  [ "${lines[0]}" = "${lines[1]}" ]
  [ "${lines[0]}" = "${lines[2]}" ]
}

@test "a test program has a display of its own where a display shows every desktop, unless it is at the screen" {
  displays 10.0
  [ "${lines[0]}" != "${lines[1]}" ]
  [ "${lines[0]}" = "${lines[2]}" ]
}

@test "a program that did not start is started again" { start late 0 2; }
@test "a program that never starts fails" { start never 3 2; }
@test "a failing test is not repeated" { start failing 3 1; }

# --- join-sources ---

@test "the sources of a folder that the list of groups does not name are a group of their own" {
  local tree
  tree=$(realpath "$BATS_TEST_TMPDIR")/tree
  mkdir -p "$tree"/{tools,another,build}
  cp "$tools/join-sources" "$tree/tools"
  touch "$tree/another/Source.cpp"
  echo "[{\"file\": \"$tree/another/Source.cpp\", \"command\": \"g++ -Iheaders -c Source.cpp\"}]" >"$tree/build/compile_commands.json"
  run -0 "$tree/tools/join-sources" "$tree/build" "$tree/joined"
  [ "$output" = "$tree/joined/another.cpp" ]
  [ "$(cat "$tree/joined/another".{cpp,flags})" = "#include \"$tree/another/Source.cpp\""$'\n'-Iheaders ]
}

# --- test ---

@test "what a test runs on is printed" {
  run -0 "$tools/print-versions" "$ZD_PROGRAMS/.."
  local what
  for what in platform compiler Wine CMake; do expect "^$what: .*[0-9]"; done
}

@test "the page for developers lists every program that ./test takes" {
  local name rows
  # shellcheck disable=SC2016 # Markdown
  rows=$(sed -n '/^| folder below `tests\/` | programs |/,/^$/p' "$project/docs/developing.md" | cut -d '|' -f 2,3)
  while read -r name _; do
    grep -qF "\`$name\`" <<<"$rows" || { echo "$name is missing"; return 1; }
  done <"$ZD_PROGRAMS/../test-names"
}
