# SPDX-License-Identifier: MIT
# Compiles that many sources of each target from here on as one. They share headers and what is made of templates then:
# all at once take half the time that they take one by one, and a change to one of them takes the longer. Names in their
# unnamed namespaces must differ.
if(NOT EMP_WINDOW_SOURCES_AT_ONCE EQUAL 1)
  set(CMAKE_UNITY_BUILD ON)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE ${EMP_WINDOW_SOURCES_AT_ONCE})
endif()
