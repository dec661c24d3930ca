# SPDX-License-Identifier: MIT
# The libraries of the module, compiled from the sources that tools/wasm has fetched, and replacements for what the C
# and C++ libraries lack there.
enable_language(C)
set(EMP_WINDOW_WASM_SOURCES "" CACHE PATH "Where tools/wasm has laid the sources of jsoncpp and SQLite")
if(NOT EXISTS ${EMP_WINDOW_WASM_SOURCES}/complete)
  message(FATAL_ERROR "The libraries' sources are not there; tools/wasm fetches them")
endif()
# No code uses run-time type information, and the names of types take space in the module. When compiling for size, emcc
# defers inlining to the linker. That is too late for the compiler's optimisations: the module would be larger, and half
# as fast.
add_compile_options(-fwasm-exceptions -finline-functions -mnontrapping-fptoint -msign-ext $<$<COMPILE_LANGUAGE:CXX>:-fno-rtti>)
include_directories(BEFORE SYSTEM ${PROJECT_SOURCE_DIR}/wasm/include)

file(GLOB sources ${EMP_WINDOW_WASM_SOURCES}/jsoncpp/src/lib_json/*.cpp)
add_library(jsoncpp STATIC ${sources})
target_include_directories(jsoncpp SYSTEM PUBLIC ${EMP_WINDOW_WASM_SOURCES}/jsoncpp/include)
target_compile_features(jsoncpp PRIVATE cxx_std_17)
add_library(PkgConfig::jsoncpp ALIAS jsoncpp)

# Databases are in memory, and used by one thread; the module's own sources replace calls to the operating system. The
# features in sqlite3.txt, which no statement here uses, are left out of SQLite's source.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/sqlite3.txt left_out)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/sqlite3.txt)
add_library(sqlite3 STATIC ${EMP_WINDOW_WASM_SOURCES}/sqlite3/sqlite3.c)
target_include_directories(sqlite3 SYSTEM PUBLIC ${EMP_WINDOW_WASM_SOURCES}/sqlite3)
# Small allocations come from the heap, whose free memory is cleared in the package. SQLite's own pool for them would
# retain old content.
target_compile_definitions(sqlite3 PRIVATE SQLITE_THREADSAFE=0 SQLITE_OMIT_LOOKASIDE ${left_out})
target_compile_options(sqlite3 PRIVATE -Wno-undefined-internal) # functions that are declared for renaming, and never called
add_library(PkgConfig::sqlite3 ALIAS sqlite3)
