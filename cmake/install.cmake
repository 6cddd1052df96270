# Installs the library, its headers, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS vosmerebase EXPORT VosmereBaseTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library
                NAMELINK_COMPONENT development
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VosmereBase)
install(EXPORT VosmereBaseTargets NAMESPACE VosmereBase:: DESTINATION ${package_dir}
        COMPONENT development)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VosmereBaseConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/VosmereBaseConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VosmereBaseConfigVersion.cmake
                                 COMPATIBILITY ${compatibility})
install(FILES ${PROJECT_BINARY_DIR}/VosmereBaseConfig.cmake
              ${PROJECT_BINARY_DIR}/VosmereBaseConfigVersion.cmake
        DESTINATION ${package_dir} COMPONENT development)

# Relative, so that the installed tree can be moved.
file(RELATIVE_PATH prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
set(pkgconfig_private_libs "-lxml2 -lhivex -luuid -lstdc++ -pthread")
if(WIN32)
  list(TRANSFORM system_libraries REPLACE "Threads::Threads" "stdc++ -pthread" OUTPUT_VARIABLE names)
  list(TRANSFORM names PREPEND -l)
  list(JOIN names " " pkgconfig_private_libs)
endif()
if(NOT VOSMERE_SHARED)
  # Also without the option --static, since there is no other library.
  set(pkgconfig_libs " ${pkgconfig_private_libs}")
  set(pkgconfig_private_libs "")
  set(pkgconfig_flags " -DVOSMERE_STATIC")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/vosmerebase.pc.in ${PROJECT_BINARY_DIR}/vosmerebase.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/vosmerebase.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
        COMPONENT development)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/doc/schema COMPONENT development
        DESTINATION ${CMAKE_INSTALL_DATADIR}/vosmerebase)
# GDB looks for its views under the name of the library; other debuggers are told where theirs are.
install(FILES ${PROJECT_SOURCE_DIR}/debugger/vosmere.natvis COMPONENT development
        DESTINATION ${CMAKE_INSTALL_DATADIR}/vosmerebase)
if(VOSMERE_SHARED AND NOT WIN32)
  install(FILES ${PROJECT_SOURCE_DIR}/debugger/vosmere_gdb.py COMPONENT development
          DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}
          RENAME libvosmerebase.so.${PROJECT_VERSION}-gdb.py)
endif()
if(NOT VOSMERE_DEBIAN)  # whose packages have these under other names
  install(FILES ${PROJECT_SOURCE_DIR}/LICENSE ${PROJECT_SOURCE_DIR}/CHANGELOG.md
          DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
endif()

# Removes what the last installation from this build folder has put there.
if(PROJECT_IS_TOP_LEVEL)
  include(${PROJECT_SOURCE_DIR}/cmake/package.cmake)
  add_custom_target(uninstall WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
                              COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake)
endif()
