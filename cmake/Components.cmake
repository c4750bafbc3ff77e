# A component is one folder, nearly always with one target. It sees the headers of the components that it links and of no others: each
# offers only its own folder, so an include that points the wrong way does not compile.

# No path of the machine reaches what is built, wherever the sources and the build lie.
set(ZD_FILE_PREFIX_MAPS -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
if(NOT ZD_COVERAGE)
  # The counts of lines are kept with the names of files, all of which the program that adds them up opens.
  list(APPEND ZD_FILE_PREFIX_MAPS -ffile-prefix-map=${PROJECT_BINARY_DIR}=./build)
endif()

add_library(zd_build_rules INTERFACE)
target_compile_features(zd_build_rules INTERFACE cxx_std_20)
target_compile_definitions(zd_build_rules INTERFACE UNICODE _UNICODE STRICT NOMINMAX WIN32_LEAN_AND_MEAN
                                                    _WIN32_WINNT=0x0A00 WINVER=0x0A00)
target_compile_options(
  zd_build_rules
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wshadow
            -Wcast-qual
            -Woverloaded-virtual
            -Wundef
            -Werror
            -ffunction-sections
            -fdata-sections
            ${ZD_FILE_PREFIX_MAPS}
            # Lets a compiler cache see which precompiled header a source uses.
            -fpch-preprocess)
include(CompilerCache)
# A program or a module brings its runtime with it: nothing needs to lie beside it.
target_link_options(zd_build_rules INTERFACE -static)

# zd_add_precompiled_headers(name HEADERS...): a target that compiles the headers once. Targets with the same flags use
# the result by zd_precompile_headers(target name), which also links the libraries whose headers are among them. Every
# source still includes what it uses; the analysers, which read no precompiled header, fail otherwise.
#   USES  the libraries of the headers
function(zd_add_precompiled_headers name)
  cmake_parse_arguments(PRECOMPILED "" "" "USES" ${ARGN})
  set(source ${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "")
  add_library(${name} OBJECT ${source})
  target_link_libraries(${name} PUBLIC zd_build_rules ${PRECOMPILED_USES})
  target_precompile_headers(${name} PRIVATE ${PRECOMPILED_UNPARSED_ARGUMENTS})
endfunction()

function(zd_precompile_headers target name)
  get_target_property(uses ${name} LINK_LIBRARIES)
  target_link_libraries(${target} PRIVATE ${uses})
  target_precompile_headers(${target} REUSE_FROM ${name})
endfunction()

set(ZD_PLATFORM_HEADERS
    <windows.h>
    <comdef.h>
    <commctrl.h>
    <algorithm>
    <functional>
    <memory>
    <optional>
    <stdexcept>
    <string>
    <string_view>
    <utility>
    <vector>)
zd_add_precompiled_headers(platform_headers ${ZD_PLATFORM_HEADERS})
# What the components of a folder use; the module's components and the tests' folder name other sets.
set(ZD_PRECOMPILED_HEADERS platform_headers)

# zd_add_component(name SOURCES ... USES ... [PORTABLE]): a static library of this folder's sources; USES are the components
# below it. The sources of a PORTABLE one do not see the platform's headers.
function(zd_add_component name)
  cmake_parse_arguments(COMPONENT "PORTABLE" "" "SOURCES;USES" ${ARGN})
  if(COMPONENT_SOURCES)
    add_library(${name} STATIC ${COMPONENT_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC zd_build_rules ${COMPONENT_USES})
    if(NOT COMPONENT_PORTABLE)
      zd_precompile_headers(${name} ${ZD_PRECOMPILED_HEADERS})
    endif()
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} INTERFACE zd_build_rules ${COMPONENT_USES})
  endif()
  cmake_path(RELATIVE_PATH CMAKE_CURRENT_SOURCE_DIR BASE_DIRECTORY ${PROJECT_SOURCE_DIR} OUTPUT_VARIABLE folder)
  list(APPEND COMPONENT_SOURCES -)
  list(GET COMPONENT_SOURCES 0 source)
  list(JOIN COMPONENT_USES " " uses)
  set_property(GLOBAL APPEND PROPERTY ZD_COMPONENTS "${name} ${folder} ${source} ${uses}")
endfunction()

# The build keeps what each component may use in a file, one line a component: name, folder, one of its sources or -, and
# the libraries that it uses.
function(zd_write_components)
  get_property(components GLOBAL PROPERTY ZD_COMPONENTS)
  list(JOIN components "\n" lines)
  file(WRITE ${PROJECT_BINARY_DIR}/components "${lines}\n")
endfunction()
