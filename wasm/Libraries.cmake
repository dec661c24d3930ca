# SPDX-License-Identifier: MIT
# The libraries that the module stands on, compiled from the sources that tools/wasm has fetched, and what the C and C++
# libraries there lack.
enable_language(C)
set(EMP_WINDOW_WASM_SOURCES "" CACHE PATH "Where tools/wasm has laid the sources of jsoncpp and SQLite")
if(NOT EXISTS ${EMP_WINDOW_WASM_SOURCES}/complete)
  message(FATAL_ERROR "The libraries' sources are not there; tools/wasm fetches them")
endif()
# Nothing here asks for the type of an object at run time; the types' names take a place of their own in the module. Compiling
# for size, emcc asks that nothing is inlined until all is linked, which is too late for what the compiler makes of it: the
# module would be larger, and half as fast.
add_compile_options(-fwasm-exceptions -finline-functions -mnontrapping-fptoint -msign-ext $<$<COMPILE_LANGUAGE:CXX>:-fno-rtti>)
include_directories(BEFORE SYSTEM ${PROJECT_SOURCE_DIR}/wasm/include)

file(GLOB sources ${EMP_WINDOW_WASM_SOURCES}/jsoncpp/src/lib_json/*.cpp)
add_library(jsoncpp STATIC ${sources})
target_include_directories(jsoncpp SYSTEM PUBLIC ${EMP_WINDOW_WASM_SOURCES}/jsoncpp/include)
target_compile_features(jsoncpp PRIVATE cxx_std_17)
add_library(PkgConfig::jsoncpp ALIAS jsoncpp)

# Databases are in memory there, used by one thread; what asks an operating system is in the module's own sources. Its makefile
# has left out of the source what sqlite3.txt names, which is what no statement here uses.
file(STRINGS ${CMAKE_CURRENT_LIST_DIR}/sqlite3.txt left_out)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_CURRENT_LIST_DIR}/sqlite3.txt)
add_library(sqlite3 STATIC ${EMP_WINDOW_WASM_SOURCES}/sqlite3/sqlite3.c)
target_include_directories(sqlite3 SYSTEM PUBLIC ${EMP_WINDOW_WASM_SOURCES}/sqlite3)
# Small pieces come from the heap, whose free ones are cleared in the package; its own store of them would keep what they held.
target_compile_definitions(sqlite3 PRIVATE SQLITE_THREADSAFE=0 SQLITE_OMIT_LOOKASIDE ${left_out})
target_compile_options(sqlite3 PRIVATE -Wno-undefined-internal) # what is declared for renaming, and never called
add_library(PkgConfig::sqlite3 ALIAS sqlite3)
