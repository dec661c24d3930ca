# The libraries that the module stands on, compiled from the sources that tools/wasm has fetched, and what the C and C++
# libraries there lack.
enable_language(C)
set(EMP_WINDOW_WASM_SOURCES "" CACHE PATH "Where tools/wasm has laid the sources of jsoncpp and SQLite")
if(NOT EXISTS ${EMP_WINDOW_WASM_SOURCES}/complete)
  message(FATAL_ERROR "The libraries' sources are not there; tools/wasm fetches them")
endif()
add_compile_options(-fwasm-exceptions -msign-ext -mnontrapping-fptoint)
include_directories(BEFORE SYSTEM ${PROJECT_SOURCE_DIR}/wasm/include)

file(GLOB sources ${EMP_WINDOW_WASM_SOURCES}/jsoncpp/src/lib_json/*.cpp)
add_library(jsoncpp STATIC ${sources})
target_include_directories(jsoncpp SYSTEM PUBLIC ${EMP_WINDOW_WASM_SOURCES}/jsoncpp/include)
target_compile_features(jsoncpp PRIVATE cxx_std_17)
add_library(PkgConfig::jsoncpp ALIAS jsoncpp)

# Databases are in memory there, used by one thread; what asks an operating system is in the module's own sources.
add_library(sqlite3 STATIC ${EMP_WINDOW_WASM_SOURCES}/sqlite3/sqlite3.c)
target_include_directories(sqlite3 SYSTEM PUBLIC ${EMP_WINDOW_WASM_SOURCES}/sqlite3)
target_compile_definitions(sqlite3 PRIVATE
  SQLITE_THREADSAFE=0 SQLITE_OMIT_LOAD_EXTENSION SQLITE_OMIT_DEPRECATED SQLITE_OMIT_AUTHORIZATION
  SQLITE_OMIT_PROGRESS_CALLBACK SQLITE_OMIT_SHARED_CACHE)
add_library(PkgConfig::sqlite3 ALIAS sqlite3)

# Headers alone, taken out of a folder with those of this machine's own C library.
add_library(CLI11 INTERFACE)
target_include_directories(CLI11 SYSTEM INTERFACE ${EMP_WINDOW_WASM_SOURCES}/headers)
add_library(CLI11::CLI11 ALIAS CLI11)
