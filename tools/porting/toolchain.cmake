# SPDX-License-Identifier: MIT
# Compiles for another architecture of Debian with Debian's compiler for it.
# TARGET_TRIPLE     as in arm-linux-gnueabihf
# TARGET_SYSROOT    libraries and headers of that architecture
# TARGET_EMULATOR   runs its programs here; empty if the processor can run them
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES TARGET_TRIPLE TARGET_SYSROOT TARGET_EMULATOR)
set(CMAKE_SYSTEM_NAME Linux)
string(REGEX MATCH "^[^-]+" CMAKE_SYSTEM_PROCESSOR ${TARGET_TRIPLE})
set(CMAKE_CXX_COMPILER ${TARGET_TRIPLE}-g++)
set(CMAKE_C_COMPILER ${TARGET_TRIPLE}-gcc)
set(CMAKE_LIBRARY_ARCHITECTURE ${TARGET_TRIPLE})
if(TARGET_TRIPLE STREQUAL "i686-linux-gnu")
  set(CMAKE_LIBRARY_ARCHITECTURE i386-linux-gnu)
endif()
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi) # a note that compilers before gcc 7 passed some arguments differently
set(CMAKE_SYSROOT ${TARGET_SYSROOT})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${TARGET_SYSROOT})
set(ENV{PKG_CONFIG_LIBDIR} ${TARGET_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:${TARGET_SYSROOT}/usr/share/pkgconfig)
if(TARGET_EMULATOR)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${TARGET_EMULATOR} -L ${TARGET_SYSROOT})
else()
  set(libraries ${TARGET_SYSROOT}/lib/${CMAKE_LIBRARY_ARCHITECTURE}:${TARGET_SYSROOT}/usr/lib/${CMAKE_LIBRARY_ARCHITECTURE})
  set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,--dynamic-linker=${TARGET_SYSROOT}/lib/ld-linux.so.2,--disable-new-dtags,-rpath,${libraries}")
endif()
