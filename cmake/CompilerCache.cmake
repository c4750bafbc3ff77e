# Uses ccache where it is installed, unless another launcher is chosen. The settings are part of every call, so that
# clones in other folders share the results: paths are relative to the project, the times of headers do not count, nor
# do the definitions inside a precompiled header, and the compiler itself lists the headers that a source reads.
find_program(ZD_CCACHE ccache)
if(ZD_CCACHE AND (NOT CMAKE_CXX_COMPILER_LAUNCHER OR CMAKE_CXX_COMPILER_LAUNCHER STREQUAL "ccache"))
  set(CMAKE_CXX_COMPILER_LAUNCHER
      env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      "CCACHE_IGNOREOPTIONS=-ffile-prefix-map=*" ${ZD_CCACHE})
  set(CMAKE_C_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()
