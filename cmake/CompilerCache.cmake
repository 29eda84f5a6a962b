# ccache, where it is installed, answers for what was compiled before, in any folder: paths below the source folder count
# as relative ones. A precompiled header is the same when what it was made of is the same.
find_program(MENUBAR_CCACHE ccache)
if(MENUBAR_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${MENUBAR_CCACHE})
  set(CMAKE_OBJCXX_COMPILER_LAUNCHER ${CMAKE_CXX_COMPILER_LAUNCHER})
endif()
