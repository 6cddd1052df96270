# Header-only packages of the host, for the native and for the cross build. They are found through
# links in the build tree: /usr/include itself would drag the host's C library into a cross build.
function(add_header_only target)
  set(root ${PROJECT_BINARY_DIR}/header_only)
  file(MAKE_DIRECTORY ${root})
  foreach(header IN LISTS ARGN)
    get_filename_component(folder ${header} DIRECTORY)
    find_path(${folder}_ROOT ${header} REQUIRED NO_CMAKE_FIND_ROOT_PATH
              PATHS /usr/include /usr/local/include)
    file(CREATE_LINK ${${folder}_ROOT}/${folder} ${root}/${folder} SYMBOLIC)
  endforeach()
  add_library(${target} INTERFACE)
  target_include_directories(${target} SYSTEM INTERFACE ${root})
endfunction()
