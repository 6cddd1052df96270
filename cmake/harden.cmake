# Flags that make faults in memory harder to exploit: for the project's own release builds, not for
# programs that embed the library, which have flags of their own.
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

if(WIN32)
  set(compile -fstack-protector-strong)
  set(link -Wl,--dynamicbase,--nxcompat -fstack-protector-strong)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    list(APPEND link -Wl,--high-entropy-va)
  endif()
else()
  # Distributions may define the first one themselves, with another value.
  set(compile -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong -fstack-clash-protection)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
    list(APPEND compile -fcf-protection)
  endif()
  set(link -Wl,-z,relro,-z,now,-z,noexecstack)
endif()

# Debug builds check nothing without optimisation, and sanitizers have checks of their own.
add_compile_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:${compile}>")
add_link_options("$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:${link}>")
