# Tests: GoogleTest from its Debian package, and one test program per component.

set(ZD_GOOGLETEST /usr/src/googletest CACHE PATH "Sources of GoogleTest, as the package googletest installs them")
if(NOT EXISTS ${ZD_GOOGLETEST}/CMakeLists.txt)
  message(FATAL_ERROR "GoogleTest is not at ${ZD_GOOGLETEST}: install googletest or set ZD_GOOGLETEST")
endif()

set(CMAKE_POLICY_DEFAULT_CMP0077 NEW)
set(INSTALL_GTEST OFF)
add_subdirectory(${ZD_GOOGLETEST} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(target gtest gmock)
  target_compile_options(${target} PRIVATE -w)
endforeach()

# The platform's headers once more, because the tests' flags are others, and the test framework's.
zd_add_precompiled_headers(
  test_headers
  ${ZD_PLATFORM_HEADERS}
  <array>
  <chrono>
  <map>
  <set>
  <span>
  <gmock/gmock.h>
  USES
  gmock)
set(ZD_PRECOMPILED_HEADERS test_headers)

# zd_add_test(name SOURCES ... USES ... [RESOURCES ...] [SCREEN patterns...] [TIMEOUT seconds] [SHARDS number] [ALONE] [LARGE]
# [UNCOUNTED] [SERVER] [SLOW]):
# the program name_tests. CTest starts it once as name, and once as name.screen for the tests that SCREEN names; both have
# the label of their folder too. The deep run plays each test in a process of its own and in a shuffled order besides.
#   RESOURCES  targets that hold compiled resources, or .rc files
#   SCREEN     the tests, as patterns of Suite.Test, that need the real keyboard, the real foreground or real painting.
#              Nothing runs beside them; all others run side by side on desktops that are never shown
#   TIMEOUT    how long one test may take before the watchdog ends it, in seconds; 180 by default
#   SHARDS     divides a long program into so many starts, name.1, name.2 and so on, that run beside each other
#   ALONE      nothing runs beside the program
#   LARGE      for tests of large amounts: without the heap's own checks, whose time grows with all that is allocated
#   SERVER     gets a database server of its own. It belongs to the deep run, which installs one and alone builds the
#              program; where there is none, the tests say that they were not run
#   SLOW       takes longest, mostly waiting, and begins early, in the first session: the tour has the second's processor
#   UNCOUNTED  left out when lines are counted: its repetitions would take minutes and run hardly a further line
function(zd_add_test name)
  cmake_parse_arguments(TEST "ALONE;LARGE;UNCOUNTED;SERVER;SLOW" "TIMEOUT;SHARDS" "SOURCES;USES;RESOURCES;SCREEN" ${ARGN})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 180)
  endif()

  set(target ${name}_tests)
  set(on_screen ${CMAKE_CURRENT_BINARY_DIR}/${name}_on_screen.cpp)
  file(CONFIGURE OUTPUT ${on_screen}
       CONTENT "#include \"OnScreen.h\"\n\nconst char test_support::tests_on_screen[] = \"@TEST_SCREEN@\";\n" @ONLY)
  # Reading the precompiled headers takes ten times as long as the source itself.
  set_source_files_properties(${on_screen} PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
  add_executable(${target} ${TEST_SOURCES} ${on_screen})
  foreach(resource IN LISTS TEST_RESOURCES)
    if(TARGET ${resource})
      target_sources(${target} PRIVATE $<TARGET_OBJECTS:${resource}>)
    else()
      target_sources(${target} PRIVATE ${resource})
    endif()
  endforeach()
  target_link_libraries(${target} PRIVATE test_support ${TEST_USES})
  zd_precompile_headers(${target} ${ZD_PRECOMPILED_HEADERS})
  if(NOT TEST_UNCOUNTED)
    set_property(GLOBAL APPEND PROPERTY ZD_COUNTED_PROGRAMS ${target})
  endif()

  # The heap's own checks are on, so that the validation after each test sees overruns and use after free.
  set(environment "ZD_TEST_LIMIT=${TEST_TIMEOUT}" "WINEDEBUG=-all,warn+heap")
  if(TEST_LARGE)
    set(environment "ZD_TEST_LIMIT=${TEST_TIMEOUT}" "WINEDEBUG=-all")
  endif()
  set(offscreen ZD_TEST_PART=offscreen ${environment})
  if(TEST_SHARDS)
    foreach(shard RANGE 1 ${TEST_SHARDS})
      zd_add_run(${name}.${shard} ${target} ${TEST_ALONE} ZD_TEST_SHARD=${shard}/${TEST_SHARDS} ${offscreen})
    endforeach()
  else()
    zd_add_run(${name} ${target} ${TEST_ALONE} ${offscreen})
  endif()
  zd_add_deep_runs(${name} ${target} ${TEST_ALONE} ${offscreen})
  if(TEST_SCREEN)
    # A busy machine delays what the display says of the focus, so that input is lost: nothing runs beside these.
    set(screen ZD_TEST_PART=screen ${environment})
    zd_add_run(${name}.screen ${target} ON ${screen})
    zd_add_deep_runs(${name}.screen ${target} ON ${screen})
  endif()
  set(depth)
  if(TEST_SERVER)
    set_property(TEST ${name} APPEND PROPERTY LABELS deep)
    set_target_properties(${target} PROPERTIES EXCLUDE_FROM_ALL ON)
    set(depth DEEP)
  endif()
  if(TEST_SLOW)
    set_property(TEST ${name} PROPERTY COST 1000)
  endif()
  zd_name_tests(${name} ${depth} ${target})
endfunction()

# One start of a test program by CTest. Of those that may run beside others, all but the slow ones alternate between the two
# sessions of ./test.
function(zd_add_run name target alone)
  get_property(runs GLOBAL PROPERTY ZD_TEST_RUNS)
  set(session)
  if(NOT alone AND NOT TEST_SLOW)
    math(EXPR runs "${runs} + 1")
    set_property(GLOBAL PROPERTY ZD_TEST_RUNS ${runs})
    math(EXPR is_second "${runs} % 2")
    if(is_second AND CMAKE_HOST_UNIX)
      set(session ${PROJECT_SOURCE_DIR}/tools/second-session)
    endif()
  endif()
  set(server)
  if(TEST_SERVER AND CMAKE_HOST_UNIX)
    set(server ${PROJECT_SOURCE_DIR}/tests/support/server/with-server)
  endif()
  add_test(NAME ${name} COMMAND ${session} ${server} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${target}>
                                --gtest_brief=1)
  # The watchdog ends a test that hangs; CTest's own limit is for a process that never reaches its main function.
  set_tests_properties(${name} PROPERTIES LABELS tests ENVIRONMENT "${ARGN}" TIMEOUT 3600 RUN_SERIAL ${alone})
endfunction()

# The same tests once more, each in a process of its own and in a shuffled order.
function(zd_add_deep_runs name target alone)
  zd_add_run(${name}.alone ${target} ${alone} ZD_TEST_ALONE=1 ZD_TEST_DEPTH=quick ${ARGN})
  zd_add_run(${name}.shuffled ${target} ${alone} GTEST_SHUFFLE=1 ZD_TEST_DEPTH=quick ${ARGN})
  set_property(TEST ${name}.alone ${name}.shuffled APPEND PROPERTY LABELS deep)
endfunction()

# zd_name_tests(name [DEEP] TARGETS...): `./test name` builds the targets and runs the tests name and name.*; so does the
# name of the folder. DEEP says that all of them belong to the deep run. The build keeps the list in a file, one line a
# name: name, folder, quick or deep, targets.
function(zd_name_tests name)
  cmake_parse_arguments(NAMED DEEP "" "" ${ARGN})
  set(depth quick)
  if(NAMED_DEEP)
    set(depth deep)
  endif()
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR}/tests OUTPUT_VARIABLE folder)
  list(JOIN NAMED_UNPARSED_ARGUMENTS " " targets)
  set_property(GLOBAL APPEND PROPERTY ZD_TEST_NAMES "${name} ${folder} ${depth} ${targets}")
endfunction()

function(zd_write_test_names)
  get_property(names GLOBAL PROPERTY ZD_TEST_NAMES)
  list(JOIN names "\n" lines)
  file(WRITE ${PROJECT_BINARY_DIR}/test-names "${lines}\n")
endfunction()
