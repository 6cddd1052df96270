# Packages: for Debian the library, what is needed to build with it, and the tool; elsewhere one archive.
set(CPACK_PACKAGE_NAME vosmerebase)
set(CPACK_PACKAGE_VENDOR "The VosmereBase authors")
set(CPACK_PACKAGE_CONTACT "The VosmereBase authors <authors@vosmere.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_PACKAGE_FILE_NAME vosmerebase-${PROJECT_VERSION}-${CMAKE_SYSTEM_PROCESSOR})
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR ZIP)

if(VOSMERE_DEBIAN)
  set(made ${PROJECT_BINARY_DIR}/debian)
  set(CPACK_GENERATOR DEB)
  set(CPACK_COMPONENTS_ALL library development tool)
  set(CPACK_DEB_COMPONENT_INSTALL ON)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_RELEASE 1vosmere1)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
  set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
  set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
      GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  set(about "VosmereBase keeps folders, pages, notes, feeds, search engines and tags\nin memory, and stores and exchanges them as XML documents.\n.\nThis package has")

  set(library libvosmerebase${soversion})
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library})
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_DEPENDS "libcurl4 (>= 7.85)")  # loaded when it is first needed
  file(WRITE ${made}/triggers "activate-noawait ldconfig\n")
  set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${made}/triggers)
  set(CPACK_COMPONENT_LIBRARY_DESCRIPTION "${about} the shared library.")
  # cpack adds scripts that do what the trigger does.
  file(WRITE ${made}/${library} "${library}: maintscript-calls-ldconfig *\n")
  install(FILES ${made}/${library} DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
          COMPONENT library)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libvosmerebase-dev)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} (= ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})")
  set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SHLIBDEPS OFF)
  set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
      "${about} the headers, and the files for CMake and pkg-config.")
  set(CPACK_DEBIAN_TOOL_PACKAGE_NAME vosmere)
  set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
  set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${library} (>= ${PROJECT_VERSION})")
  set(CPACK_COMPONENT_TOOL_DESCRIPTION
      "${about} the command-line tool.")

  # Each package has a copyright file and compressed change logs.
  file(READ ${PROJECT_SOURCE_DIR}/LICENSE license)
  file(WRITE ${made}/copyright
       "VosmereBase, a base library of a web browser.\n\nUpstream-Name: VosmereBase\n\n${license}")
  file(TIMESTAMP ${PROJECT_SOURCE_DIR}/CHANGELOG.md date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  file(WRITE ${made}/changelog.Debian
       "vosmerebase (${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE}) unstable; urgency=medium\n\n  * Made by cpack from the upstream sources.\n\n"
       " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  execute_process(COMMAND gzip -9nf ${made}/changelog.Debian)
  execute_process(COMMAND gzip -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md
                  OUTPUT_FILE ${made}/changelog.gz)
  foreach(component IN ITEMS library development tool)
    string(TOUPPER ${component} upper)
    install(FILES ${made}/copyright ${made}/changelog.Debian.gz ${made}/changelog.gz
            DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME}
            COMPONENT ${component})
  endforeach()
endif()
include(CPack)
