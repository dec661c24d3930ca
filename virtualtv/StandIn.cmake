# SPDX-License-Identifier: MIT
# A stand-in for a set's SDK, as a set in software: the libraries that the plug-in's process is linked against on a set, made of
# the rooms, and the headers that come with them. `cmake --install BUILD --component sdk --prefix DIR` lays it into DIR.

# stand_in(NAME ROOMS ROOM... ON LIBRARY...): lib<NAME>.so with what these rooms hold.
function(stand_in name)
  cmake_parse_arguments(PARSE_ARGV 1 library "" "" "ROOMS;ON")
  list(TRANSFORM library_ROOMS PREPEND virtualtv_)
  list(TRANSFORM library_ON PREPEND stand_in_)
  add_library(stand_in_${name} SHARED)
  target_link_libraries(stand_in_${name} PRIVATE ${library_ROOMS} ${library_ON})
  set_target_properties(stand_in_${name} PROPERTIES
    OUTPUT_NAME ${name} LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/sdk/lib INSTALL_RPATH $ORIGIN)
  if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize") # whose functions are the program's
    target_link_options(stand_in_${name} PRIVATE LINKER:--no-undefined)
  endif()
  install(TARGETS stand_in_${name} LIBRARY DESTINATION lib COMPONENT sdk EXCLUDE_FROM_ALL)
endfunction()

stand_in(TVService ROOMS text records json store services import broadcast seam set channels tvservice)
stand_in(D2tvMgr ROOMS d2tv ON TVService)
stand_in(vconf ROOMS settings ON TVService)
stand_in(KelCommon ROOMS framework ON TVService)
stand_in(KelEmp ROOMS device catalogue shell rpc live net program ON KelCommon TVService)

# client_header(HEADER): HEADER of platform/ without what only the set's side of it sees.
function(client_header header)
  set(begins "  // The TV service's side begins here.\n")
  set(ends "  // The TV service's side ends here.\n")
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/platform/${header})
  file(READ ${PROJECT_SOURCE_DIR}/platform/${header} text)
  string(FIND "${text}" "${begins}" from)
  while(from GREATER_EQUAL 0)
    string(SUBSTRING "${text}" 0 ${from} head)
    string(FIND "${text}" "${ends}" to)
    string(LENGTH "${ends}" length)
    math(EXPR behind "${to} + ${length}")
    string(SUBSTRING "${text}" ${behind} -1 tail)
    set(text "${head}${tail}")
    string(FIND "${text}" "${begins}" from)
  endwhile()
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/sdk/include/${header} CONTENT "${text}" @ONLY)
endfunction()

file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/platform ${PROJECT_SOURCE_DIR}/platform/*.h)
foreach(header IN LISTS headers)
  client_header(${header})
endforeach()
install(DIRECTORY ${PROJECT_BINARY_DIR}/sdk/include DESTINATION . COMPONENT sdk EXCLUDE_FROM_ALL)
