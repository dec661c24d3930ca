# Compiles the sources of each target from here on as one, if that is asked for. They share headers and what is made of
# templates then, which halves the work; names in their unnamed namespaces must differ.
if(EMP_WINDOW_WHOLE_FOLDERS)
  set(CMAKE_UNITY_BUILD ON)
  set(CMAKE_UNITY_BUILD_BATCH_SIZE 0)
endif()
