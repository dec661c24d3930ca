# SPDX-License-Identifier: MIT
# embed(TARGET NAME FILE): makes the file's bytes available to the target as
#   namespace virtualtv::embedded { extern const std::string_view NAME; }
function(embed target name file)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/embedded/${name}.cpp)
  add_custom_command(
    OUTPUT ${source}
    COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DFILE=${file} -DSOURCE=${source}
            -P ${PROJECT_SOURCE_DIR}/virtualtv/embed_file.cmake
    DEPENDS ${file} ${PROJECT_SOURCE_DIR}/virtualtv/embed_file.cmake
    VERBATIM)
  target_sources(${target} PRIVATE ${source})
endfunction()

# embed_files(TARGET NAME BASE FILE...): the same for several files: path below BASE, bytes, bytes by gzip, in their order, as
#   namespace virtualtv::embedded { extern const std::span<const std::array<std::string_view, 3>> NAME; }
function(embed_files target name base)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/embedded/${name}.cpp)
  set(script ${PROJECT_SOURCE_DIR}/virtualtv/embed_files.cmake)
  add_custom_command(
    OUTPUT ${source}
    COMMAND ${CMAKE_COMMAND} -DNAME=${name} -DBASE=${base} "-DFILES=${ARGN}" -DSOURCE=${source} -P ${script}
    DEPENDS ${ARGN} ${script}
    VERBATIM)
  target_sources(${target} PRIVATE ${source})
endfunction()
