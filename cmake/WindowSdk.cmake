# SPDX-License-Identifier: MIT
# The SDK of a set, in WINDOW_SDK: the headers of platform/ in DIR/include and the set's libraries in DIR/lib. All
# missing files are named at once. Dependencies of the libraries are searched beside them; others are found on the set
# when the process starts. Defines `platform`, the headers, and `window_platform`, the headers with the libraries.
set(WINDOW_SDK_LIBRARIES KelEmp KelCommon TVService D2tvMgr vconf CACHE STRING
  "What the set's libraries are called: all that the plug-in's process is linked against")

if(NOT IS_DIRECTORY ${WINDOW_SDK})
  message(FATAL_ERROR "WINDOW_SDK=${WINDOW_SDK} is no folder")
endif()

# sdk_headers(VARIABLE): the headers that the plug-in's own sources include.
function(sdk_headers variable)
  file(GLOB sources ${PROJECT_SOURCE_DIR}/Window/Src/* ${PROJECT_SOURCE_DIR}/Window/include/*)
  foreach(source IN LISTS sources)
    file(STRINGS ${source} lines REGEX "^#include \"(kel|tvservice|d2tv|settings)/")
    string(REGEX REPLACE "#include \"([^\"]+)\"" "include/\\1" lines "${lines}")
    list(APPEND headers ${lines})
  endforeach()
  list(REMOVE_DUPLICATES headers)
  list(SORT headers)
  set(${variable} ${headers} PARENT_SCOPE)
endfunction()

sdk_headers(headers)
set(missing "")
foreach(header IN LISTS headers)
  if(NOT EXISTS ${WINDOW_SDK}/${header})
    string(APPEND missing "\n  ${header}")
  endif()
endforeach()

add_library(platform INTERFACE IMPORTED GLOBAL)
add_library(window_platform INTERFACE IMPORTED GLOBAL)
foreach(library IN LISTS WINDOW_SDK_LIBRARIES)
  find_library(found NAMES ${library} PATHS ${WINDOW_SDK}/lib ${WINDOW_SDK}/lib64
    NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH NO_CACHE)
  if(found)
    target_link_libraries(window_platform INTERFACE ${found})
  else()
    string(APPEND missing "\n  lib/${CMAKE_SHARED_LIBRARY_PREFIX}${library}${CMAKE_SHARED_LIBRARY_SUFFIX}")
  endif()
  unset(found)
endforeach()
if(missing)
  message(FATAL_ERROR "WINDOW_SDK=${WINDOW_SDK} lacks:${missing}\n"
    "docs/porting.md tells what an SDK holds; WINDOW_SDK_LIBRARIES names libraries that are called otherwise.")
endif()
target_include_directories(platform INTERFACE ${WINDOW_SDK}/include)
target_link_libraries(window_platform INTERFACE platform)
target_link_options(window_platform INTERFACE LINKER:--allow-shlib-undefined)

list(APPEND CMAKE_PREFIX_PATH ${WINDOW_SDK})
find_package(PkgConfig REQUIRED)
pkg_check_modules(jsoncpp REQUIRED IMPORTED_TARGET jsoncpp)
