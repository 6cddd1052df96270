# Installs the library, its headers, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS vosmerebase EXPORT VosmereBaseTargets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/VosmereBase)
install(EXPORT VosmereBaseTargets NAMESPACE VosmereBase:: DESTINATION ${package_dir})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/VosmereBaseConfig.cmake.in
                              ${PROJECT_BINARY_DIR}/VosmereBaseConfig.cmake
                              INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/VosmereBaseConfigVersion.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/VosmereBaseConfig.cmake
              ${PROJECT_BINARY_DIR}/VosmereBaseConfigVersion.cmake
        DESTINATION ${package_dir})

if(NOT WIN32)
  # Relative, so that the installed tree can be moved.
  file(RELATIVE_PATH prefix_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  if(NOT VOSMERE_SHARED)
    set(pkgconfig_static_libs " -lxml2 -lhivex -luuid -lstdc++ -pthread")
    set(pkgconfig_static_flags " -DVOSMERE_STATIC")
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/vosmerebase.pc.in ${PROJECT_BINARY_DIR}/vosmerebase.pc
                 @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/vosmerebase.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endif()
