# SPDX-License-Identifier: MIT
# Code that takes most of the time with long lists is compiled for speed, at the price of some bytes; everything else is
# compiled for size.
foreach(part window jsoncpp virtualtv_json virtualtv_services virtualtv_seam virtualtv_text)
  target_compile_options(${part} PRIVATE -Os)
endforeach()

# The module: the plug-in's own entry on the set in software. The script that loads the module calls it.
add_subdirectory(wasm/iconv)
add_executable(emp-window Window/Src/main.cpp wasm/iconv/Iconv.cpp)
set_target_properties(emp-window PROPERTIES SUFFIX .wasm)
target_compile_options(emp-window PRIVATE ${EMP_WINDOW_PRODUCT_OPTIONS})
target_link_libraries(emp-window PRIVATE window virtualtv wasm_iconv strict_warnings)
# Keeps the names of functions for profiling; the package is built without them. Building the package runs the module's
# start and examines its heap, through the functions exported here.
target_link_options(emp-window PRIVATE -fwasm-exceptions -sSTANDALONE_WASM --no-entry -sALLOW_MEMORY_GROWTH
  -sTOTAL_STACK=1MB -sINITIAL_MEMORY=8MB -sMAXIMUM_MEMORY=2GB -sERROR_ON_UNDEFINED_SYMBOLS=0 --profiling-funcs
  -Wl,--export=main,--export=malloc,--export=free,--export=sbrk -Wl,--import-memory)
