# SPDX-License-Identifier: MIT
# Installs into GNU directories, by component: `program` (the program and its docs), `development` (the libraries of the
# plug-in and of the virtual TV, for CMake and pkg-config), `javascript` and `python` (the clients). With --strip,
# nothing contains debug information.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

# Headers are in separate folders, since names such as set/Tv.h are too common for the folder of all headers.
set(headers ${CMAKE_INSTALL_INCLUDEDIR}/emp-window)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/emp-window)
set(shared ${CMAKE_INSTALL_DATADIR}/emp-window)
set(plugin_library ${CMAKE_STATIC_LIBRARY_PREFIX}emp-window${CMAKE_STATIC_LIBRARY_SUFFIX})
get_target_property(virtualtv_type virtualtv TYPE)
if(virtualtv_type STREQUAL SHARED_LIBRARY)
  set(virtualtv_library ${CMAKE_SHARED_LIBRARY_PREFIX}virtualtv${CMAKE_SHARED_LIBRARY_SUFFIX})
  file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(emp-window PROPERTIES INSTALL_RPATH $ORIGIN/${to_libraries})
else()
  set(virtualtv_library ${CMAKE_STATIC_LIBRARY_PREFIX}virtualtv${CMAKE_STATIC_LIBRARY_SUFFIX})
endif()

# The program and its documentation. A program linked with a shared virtual TV needs that library too.
install(TARGETS emp-window RUNTIME COMPONENT program)
install(TARGETS virtualtv LIBRARY COMPONENT program ARCHIVE COMPONENT development)
install(FILES LICENSE README.md CHANGELOG.md TYPE DOC COMPONENT program)
install(DIRECTORY docs TYPE DOC COMPONENT program # includes the folder itself, so that links between pages work
  FILES_MATCHING PATTERN *.md PATTERN *.png PATTERN *.svg PATTERN commands.json PATTERN man EXCLUDE PATTERN completion EXCLUDE)
# The example project, and the files that the pages link to, in the same places beside them.
install(DIRECTORY examples TYPE DOC COMPONENT program USE_SOURCE_PERMISSIONS
  PATTERN node_modules EXCLUDE PATTERN package-lock.json EXCLUDE PATTERN reports EXCLUDE)
foreach(file CONTRIBUTING.md data/README.md docs/examples.txt docs/examples.methods.txt tests/install/consumer/main.cpp
             tests/window/cases/README.md tools/packages.txt virtualtv/console/client/README.md
             virtualtv/console/python/README.md)
  cmake_path(GET file PARENT_PATH folder)
  install(FILES ${file} DESTINATION ${CMAKE_INSTALL_DOCDIR}/${folder} COMPONENT program)
endforeach()
install(DIRECTORY docs/man/ DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT program)
# The folders that shells search for completions.
install(FILES docs/completion/emp-window.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
  RENAME emp-window COMPONENT program)
install(FILES docs/completion/_emp-window DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT program)
install(FILES docs/completion/emp-window.fish DESTINATION ${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d COMPONENT program)
# Units for the service manager of a user, which searches only lib. They contain the program's path, which is known at
# installation.
install(CODE "set(program_folder \${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/install/emp-window@.service.in ${PROJECT_BINARY_DIR}/install/emp-window@.service @ONLY)"
  COMPONENT program)
install(FILES ${PROJECT_BINARY_DIR}/install/emp-window@.service cmake/install/emp-window@.socket
  DESTINATION lib/systemd/user COMPONENT program)

# The libraries.
install(FILES $<TARGET_FILE:window> TYPE LIB RENAME ${plugin_library} COMPONENT development)
install(DIRECTORY Window/include/ DESTINATION ${headers}/window COMPONENT development)
install(DIRECTORY platform/ DESTINATION ${headers}/platform COMPONENT development FILES_MATCHING PATTERN *.h)
# Headers of rooms that only the program uses are not installed, since they need further libraries.
install(DIRECTORY virtualtv/ DESTINATION ${headers}/virtualtv COMPONENT development FILES_MATCHING PATTERN *.h
  PATTERN console EXCLUDE PATTERN net EXCLUDE PATTERN program EXCLUDE PATTERN tab EXCLUDE)

# CMake does not strip archives, since that would remove the symbols to link with. Their debug information can be
# removed.
foreach(library ${plugin_library} ${virtualtv_library})
  if(library MATCHES "\\${CMAKE_STATIC_LIBRARY_SUFFIX}$")
    install(CODE "if(CMAKE_INSTALL_DO_STRIP)
      execute_process(COMMAND ${CMAKE_STRIP} --strip-debug \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_LIBDIR}/${library}
        COMMAND_ERROR_IS_FATAL ANY)
    endif()" COMPONENT development)
  endif()
endforeach()

configure_package_config_file(cmake/install/emp-window-config.cmake.in ${PROJECT_BINARY_DIR}/install/emp-window-config.cmake
  INSTALL_DESTINATION ${package} PATH_VARS headers CMAKE_INSTALL_LIBDIR CMAKE_INSTALL_BINDIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/install/emp-window-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/install/emp-window-config.cmake ${PROJECT_BINARY_DIR}/install/emp-window-config-version.cmake
  DESTINATION ${package} COMPONENT development)
# Folders in these files are relative to the file, so that the installed tree can be moved.
file(RELATIVE_PATH to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
foreach(name emp-window virtualtv)
  configure_file(cmake/install/${name}.pc.in ${PROJECT_BINARY_DIR}/install/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/install/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endforeach()

# The clients.
install(DIRECTORY virtualtv/console/client/ DESTINATION ${shared}/javascript COMPONENT javascript
  FILES_MATCHING PATTERN *.js PATTERN *.d.ts PATTERN package.json PATTERN README.md)
install(FILES virtualtv/console/python/emp_window.py DESTINATION ${shared}/python COMPONENT python)
