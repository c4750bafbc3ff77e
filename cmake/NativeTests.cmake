# Test programs for this machine, with the address and undefined behaviour sanitizers, of sources that need nothing of
# Windows.
include_guard(GLOBAL)

# They belong to the deep run, which brings the compiler along.
find_program(ZD_NATIVE_CLANG clang++)
add_custom_target(native_tests)

# zd_compile_natively(objects SOURCES ... FOLDERS ... OPTIONS ...): the object files of these sources.
function(zd_compile_natively objects)
  cmake_parse_arguments(NATIVE "" "" "SOURCES;FOLDERS;OPTIONS" ${ARGN})
  list(TRANSFORM NATIVE_FOLDERS PREPEND -I)
  set(outputs "")
  foreach(source IN LISTS NATIVE_SOURCES)
    get_filename_component(source ${source} ABSOLUTE)
    get_filename_component(name ${source} NAME_WE)
    set(object ${CMAKE_CURRENT_BINARY_DIR}/native/${name}.o)
    add_custom_command(
      OUTPUT ${object}
      COMMAND ${CMAKE_CXX_COMPILER_LAUNCHER} ${ZD_NATIVE_CLANG} -std=c++20 -g -O1 ${NATIVE_OPTIONS}
              -fsanitize=address,undefined -fno-sanitize-recover=all ${NATIVE_FOLDERS} -MD -MF ${object}.d -c ${source} -o
              ${object}
      DEPENDS ${source}
      DEPFILE ${object}.d
      VERBATIM)
    list(APPEND outputs ${object})
  endforeach()
  set(${objects} ${outputs} PARENT_SCOPE)
endfunction()

# zd_add_native_test(name SOURCES ... FOLDERS ...): the test native.name, a program of GoogleTest's tests.
function(zd_add_native_test name)
  if(NOT ZD_NATIVE_CLANG)
    return()
  endif()
  cmake_parse_arguments(TEST "" "" "SOURCES;FOLDERS" ${ARGN})
  set(folders ${ZD_GOOGLETEST}/googletest/include ${ZD_GOOGLETEST}/googletest)
  zd_compile_natively(framework SOURCES ${ZD_GOOGLETEST}/googletest/src/gtest-all.cc
                                        ${ZD_GOOGLETEST}/googletest/src/gtest_main.cc FOLDERS ${folders} OPTIONS -w)
  zd_compile_natively(objects SOURCES ${TEST_SOURCES} FOLDERS ${TEST_FOLDERS} ${folders}
                      OPTIONS -Wall -Wextra -Werror)
  set(program ${CMAKE_CURRENT_BINARY_DIR}/native/${name}_tests)
  add_custom_command(
    OUTPUT ${program}
    COMMAND ${ZD_NATIVE_CLANG} -fsanitize=address,undefined ${objects} ${framework} -o ${program}
    DEPENDS ${objects} ${framework}
    VERBATIM)
  add_custom_target(native_${name} DEPENDS ${program})
  add_dependencies(native_tests native_${name})
  add_test(NAME native.${name} COMMAND ${program} --gtest_brief=1)
  set_tests_properties(native.${name} PROPERTIES LABELS "native;deep" TIMEOUT 600)
endfunction()
