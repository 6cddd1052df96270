# An overlay port that builds the sources around it. hivex must be installed on Linux: no port has it.
get_filename_component(SOURCE_PATH "${CMAKE_CURRENT_LIST_DIR}/../../.." ABSOLUTE)
string(COMPARE EQUAL "${VCPKG_LIBRARY_LINKAGE}" dynamic shared)
vcpkg_cmake_configure(SOURCE_PATH "${SOURCE_PATH}"
                      OPTIONS -DVOSMERE_SHARED=${shared} -DVOSMERE_TESTS=OFF -DVOSMERE_TOOLS=OFF)
vcpkg_cmake_install()
vcpkg_cmake_config_fixup(PACKAGE_NAME VosmereBase CONFIG_PATH lib/cmake/VosmereBase)
vcpkg_fixup_pkgconfig()
file(REMOVE_RECURSE "${CURRENT_PACKAGES_DIR}/debug/include" "${CURRENT_PACKAGES_DIR}/debug/share")
vcpkg_install_copyright(FILE_LIST "${SOURCE_PATH}/LICENSE")
