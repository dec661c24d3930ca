# SPDX-License-Identifier: MIT
# Compiles through ccache if it is installed. Paths are relative to the build folder, so that a second clone can reuse
# the first one's objects; its debug information then names the first one's folder.
find_program(CCACHE ccache)
mark_as_advanced(CCACHE)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_ABSSTDERR=1
    CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()
