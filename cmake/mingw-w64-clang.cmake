# Builds for 64-bit Windows with Clang and LLD, and with the headers and libraries of MinGW-w64, which
# Clang 14 does not find where Debian has them.
include(${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake)
set(gcc /usr/lib/gcc/${target}/12-posix)

set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
foreach(language IN ITEMS C CXX)
  set(CMAKE_${language}_COMPILER_TARGET ${target})
  # Without -nostdlibinc it would take the headers of the host as well. GCC's runtime has emulated
  # thread-local variables, with other names than Windows' own.
  set(CMAKE_${language}_FLAGS_INIT
      "-nostdlibinc -isystem /usr/${target}/include -pthread -femulated-tls -Wno-unused-command-line-argument")
endforeach()
set(CMAKE_CXX_FLAGS_INIT
    "-nostdinc++ -isystem ${gcc}/include/c++ -isystem ${gcc}/include/c++/${target} ${CMAKE_CXX_FLAGS_INIT}")
foreach(kind IN ITEMS EXE SHARED)
  string(APPEND CMAKE_${kind}_LINKER_FLAGS_INIT " -fuse-ld=lld -B${gcc} -L${gcc}")
endforeach()
