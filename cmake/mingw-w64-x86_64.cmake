# Builds for 64-bit Windows on Linux:
#   cmake --preset release
#   ctest --preset release
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(zd_triple x86_64-w64-mingw32)
# Debian has a compiler for each thread model; other systems have this one only, without the model in its name.
find_program(ZD_POSIX_COMPILER ${zd_triple}-g++-posix)
set(zd_thread_model "")
if(ZD_POSIX_COMPILER)
  set(zd_thread_model -posix)
endif()
set(CMAKE_C_COMPILER ${zd_triple}-gcc${zd_thread_model})
set(CMAKE_CXX_COMPILER ${zd_triple}-g++${zd_thread_model})
set(CMAKE_RC_COMPILER ${zd_triple}-windres)
set(ZD_WIDL ${zd_triple}-widl)

set(CMAKE_FIND_ROOT_PATH /usr/${zd_triple})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Windows programs started by the build and by CTest go through Wine with the build's private prefix.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tools/wine-test)
