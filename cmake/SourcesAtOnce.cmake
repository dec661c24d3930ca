# SPDX-License-Identifier: MIT
# Compiles this many sources of each target from here on as one. They then share headers and template instances: a full
# build takes half the time, but a change to one source takes longer. Names in their unnamed namespaces must differ.
if(NOT EMP_WINDOW_SOURCES_AT_ONCE EQUAL 1)
  set(CMAKE_UNITY_BUILD ON)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE ${EMP_WINDOW_SOURCES_AT_ONCE})
endif()
