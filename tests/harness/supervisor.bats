#!/usr/bin/env bats
# The main function of every test program catches tests that hang, crash or damage memory, names them, and goes on.

bats_require_minimum_version 1.5.0
# shellcheck source=support.bash
. "$BATS_TEST_DIRNAME/support.bash"

# misbehave TEST...: runs the tests, and fails when the program passes.
misbehave() {
  local filter
  filter=$(printf ':Misbehaving.%s' "$@")
  ZD_TEST_WATCHDOG=5 WINEDEBUG=-all,warn+heap run -1 "$tools/session" --virtual "$tools/wine-run" \
    "$ZD_PROGRAMS/misbehaving_tests.exe" "--gtest_filter=${filter#:}" --gtest_also_run_disabled_tests
  output=${output//$'\r'/}
}

@test "the watchdog ends a hanging test and shows its dialog" {
  misbehave DISABLED_OpensADialog
  expect 'Static "an open question"'
  expect '^FAILED: Misbehaving.DISABLED_OpensADialog hung$'
}

@test "the watchdog needs no answer from a hanging thread, and the rest of the tests runs" {
  misbehave Passes DISABLED_StopsAnswering PassesToo
  expect 'Edit .*hidden'
  expect '^FAILED: Misbehaving.DISABLED_StopsAnswering hung$'
  expect '^2 passed, 1 failed$'
}

@test "the watchdog ends a program that hangs after its tests" {
  misbehave DISABLED_HangsAtTheEndOfItsProcess
  expect '^FAILED: outside its tests the program hung$'
  expect '^1 passed, 1 failed$'
}

@test "a crash names its test, and the rest of the tests runs" {
  misbehave Passes DISABLED_Crashes PassesToo
  expect 'crash: exception c0000005 in DISABLED_Crashes'
  expect '^FAILED: Misbehaving.DISABLED_Crashes crashed$'
  expect '^2 passed, 1 failed$'
}

@test "a test that ends its process has failed, and the rest of the tests runs" {
  misbehave DISABLED_EndsItsProcess PassesToo
  expect '^FAILED: Misbehaving.DISABLED_EndsItsProcess ended its process with code 0$'
  expect '^1 passed, 1 failed$'
}

@test "no test at all is a failure, unless a filter may leave none" {
  run -1 "$tools/session" --virtual "$tools/wine-run" "$ZD_PROGRAMS/misbehaving_tests.exe" --gtest_filter=Nothing.Matches
  expect '^0 passed, 0 failed'
  ZD_TEST_MAY_BE_EMPTY=1 run -0 "$tools/session" --virtual "$tools/wine-run" "$ZD_PROGRAMS/misbehaving_tests.exe" \
    --gtest_filter=Nothing.Matches
}

@test "the shards of a program run each of its tests once" {
  local shard
  for shard in 1/2 2/2; do
    ZD_TEST_SHARD=$shard run -0 "$tools/session" --virtual "$tools/wine-run" "$ZD_PROGRAMS/misbehaving_tests.exe" \
      --gtest_filter='Misbehaving.Passes*'
    expect '^1 passed, 0 failed'
  done
}

@test "a write behind a block fails its test" {
  local version
  version=$(wine --version)
  version=${version#wine-}
  [ "${version%%.*}" -lt 10 ] || skip "from version 10 on, Wine's check of a heap does not see it"
  misbehave Passes DISABLED_WritesBehindABlock
  expect 'a heap of the process is damaged'
  expect '^FAILED: Misbehaving.DISABLED_WritesBehindABlock$'
}

@test "a write to a free block fails its test" {
  misbehave Passes DISABLED_WritesToAFreeBlock
  expect 'a heap of the process is damaged'
  expect '^FAILED: Misbehaving.DISABLED_WritesToAFreeBlock$'
}

# pass FILTER: runs the tests that the filter of the framework selects, which all pass.
pass() {
  run -0 "$tools/session" --virtual "$tools/wine-run" "$ZD_PROGRAMS/misbehaving_tests.exe" "--gtest_filter=$1"
  output=${output//$'\r'/}
}

@test "tests run on a desktop of their own, except those that need the screen" {
  pass 'Desktop.*'
  expect '^2 passed, 0 failed$'
}

@test "one part of a program are the tests that need the screen, the other one are the others" {
  ZD_TEST_PART=screen pass 'Desktop.*'
  expect 'OK . Desktop.OfATestOnTheScreenIsNotItsOwn'
  expect '^1 passed, 0 failed$'
  ZD_TEST_PART=offscreen pass 'Desktop.*'
  expect 'OK . Desktop.OfATestIsItsOwn'
  expect '^1 passed, 0 failed$'
}

# processes: how many processes have run the two tests that print theirs.
processes() { grep '^process [0-9]' <<<"$output" | sort -u | wc -l; }

@test "tests share a process, unless each is to run alone" {
  pass 'Process.*'
  [ "$(processes)" = 1 ]
  ZD_TEST_ALONE=1 pass 'Process.*'
  [ "$(processes)" = 2 ]
  expect '^2 passed, 0 failed$'
}

# order: the tests in the order in which they ran.
order() { sed -n 's/^\[ RUN  *\] //p' <<<"$output"; }

@test "a shuffled run has another order, which its seed repeats" {
  local filter='Misbehaving.Passes*:Process.*:Desktop.OfATestIsItsOwn' declared shuffled
  pass "$filter"
  declared=$(order)
  GTEST_SHUFFLE=1 GTEST_RANDOM_SEED=7 pass "$filter"
  expect '^GTEST_SHUFFLE=1 GTEST_RANDOM_SEED=7$'
  expect '^5 passed, 0 failed$'
  shuffled=$(order)
  [ "$shuffled" != "$declared" ]
  [ "$(sort <<<"$shuffled")" = "$(sort <<<"$declared")" ]
  GTEST_SHUFFLE=1 GTEST_RANDOM_SEED=7 pass "$filter"
  [ "$(order)" = "$shuffled" ]
}
