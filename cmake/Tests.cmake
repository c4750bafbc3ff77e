# Tests: GoogleTest from its Debian package, and one test program per room.

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
zd_add_precompiled_headers(test_headers ${ZD_PLATFORM_HEADERS} <gmock/gmock.h> USES gmock)
set(ZD_PRECOMPILED_HEADERS test_headers)

include(GoogleTest)

# zd_add_test(name SOURCES ... USES ... [RESOURCES ...] [TIMEOUT seconds] [ALONE] [SCREEN] [LARGE] [UNCOUNTED]): the
# program name_tests, whose tests CTest knows as name.Suite.Test, with the label name.
#   RESOURCES  targets that hold compiled resources, or .rc files
#   TIMEOUT    how long one test may take before the watchdog ends it; 180 by default. The longest start first.
#   ALONE      for tests that own the keyboard, the mouse and the foreground: nothing runs beside them
#   SCREEN     for tests that show windows: only one such test runs at a time, since only one window is the active one
#   LARGE      for tests of large amounts: without the heap's own checks, whose time grows with all that is allocated
#   UNCOUNTED  left out when lines are counted: its repetitions would take minutes and run hardly a further line
# Tests of one room share registry keys and files, so they run one after the other; rooms run side by side,
# except that of all SCREEN rooms one test runs at a time.
function(zd_add_test name)
  cmake_parse_arguments(TEST "ALONE;SCREEN;LARGE;UNCOUNTED" "TIMEOUT" "SOURCES;USES;RESOURCES" ${ARGN})
  if(NOT TEST_TIMEOUT)
    set(TEST_TIMEOUT 180)
  endif()
  set(shared ${name})
  if(TEST_SCREEN)
    set(shared screen)
  endif()
  # CTest's own limit is the second line of defence, for a process that never reaches its main function.
  math(EXPR ctest_timeout "${TEST_TIMEOUT} + 60")

  set(target ${name}_tests)
  add_executable(${target} ${TEST_SOURCES})
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
    set_property(GLOBAL APPEND PROPERTY ZD_TEST_PROGRAMS ${target})
  endif()
  # The heap's own checks are on, so that the validation after each test sees overruns and use after free.
  set(heap_checks ,warn+heap)
  if(TEST_LARGE)
    set(heap_checks "")
  endif()
  gtest_discover_tests(
    ${target}
    DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 300
    NO_PRETTY_VALUES
    TEST_PREFIX ${name}.
    PROPERTIES
      LABELS ${name}
      COST ${TEST_TIMEOUT}
      TIMEOUT ${ctest_timeout}
      RUN_SERIAL ${TEST_ALONE}
      RESOURCE_LOCK ${shared}
      ENVIRONMENT ZD_TEST_WATCHDOG=${TEST_TIMEOUT}
      ENVIRONMENT_MODIFICATION WINEDEBUG=set:-all${heap_checks})
endfunction()
