# A room is one folder with one target. It sees the headers of the rooms that it links and of no others: every room
# offers only its own folder, so an include that points the wrong way does not compile.

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
            -ffile-prefix-map=${PROJECT_SOURCE_DIR}=.)
# A program or a module brings its runtime with it: nothing needs to lie beside it.
target_link_options(zd_build_rules INTERFACE -static)

# zd_add_component(name SOURCES ... USES ...): a static library of this folder's sources; USES are the rooms below it.
function(zd_add_component name)
  cmake_parse_arguments(COMPONENT "" "" "SOURCES;USES" ${ARGN})
  if(COMPONENT_SOURCES)
    add_library(${name} STATIC ${COMPONENT_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} PUBLIC zd_build_rules ${COMPONENT_USES})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE ${CMAKE_CURRENT_SOURCE_DIR})
    target_link_libraries(${name} INTERFACE zd_build_rules ${COMPONENT_USES})
  endif()
endfunction()
