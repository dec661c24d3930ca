# SPDX-License-Identifier: MIT
# Our own code must compile without warnings; headers of libraries are system headers. The toolchains of sets may have
# other warnings, so these options are not used there. Sources compiled as one shadow each other's names.
set(shadow $<$<NOT:$<BOOL:$<TARGET_PROPERTY:UNITY_BUILD>>>:-Wshadow>)
add_library(strict_warnings INTERFACE)
target_compile_options(strict_warnings INTERFACE
  -Wall -Wextra -Wpedantic $<$<NOT:$<BOOL:${WINDOW_SDK}>>:-Werror>
  -Wcast-align -Wcast-qual -Wconversion -Wdouble-promotion -Wextra-semi -Wfloat-equal -Wformat -Wformat-security
  -Wnon-virtual-dtor -Wold-style-cast ${shadow} -Wsign-conversion -Wundef -Wunused
  -Wzero-as-null-pointer-constant)
# g++'s library uses functions that it deprecates itself (in std::stable_sort, in C++20), and clang warns where that is
# instantiated.
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  target_compile_options(strict_warnings INTERFACE -Wno-deprecated-declarations)
endif()
