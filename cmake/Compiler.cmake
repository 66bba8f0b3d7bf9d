# Flags that every target of the project is compiled with.

add_library(quorvane_compiler INTERFACE)
target_compile_options(quorvane_compiler INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wpedantic -Wnon-virtual-dtor)
if(QUORVANE_WERROR)
  target_compile_options(quorvane_compiler INTERFACE -Werror)
endif()
target_compile_definitions(quorvane_compiler INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
  QT_DISABLE_DEPRECATED_BEFORE=0x060400 QT_WARN_DEPRECATED_UP_TO=0x060900)

if(CMAKE_UNITY_BUILD)
  # It takes what several sources are compiled as one from for a header, and a name that two of them
  # have for one that hides the other. The builds that compile each source by itself look for both.
  target_compile_options(quorvane_compiler INTERFACE -Wno-subobject-linkage -Wno-shadow)
endif()

if(QUORVANE_SANITIZE)
  target_compile_options(quorvane_compiler INTERFACE
    -fsanitize=${QUORVANE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(quorvane_compiler INTERFACE -fsanitize=${QUORVANE_SANITIZE})
endif()

if(CMAKE_BUILD_TYPE STREQUAL "MinSizeRel")
  # The programs share libraries of which none needs all; unused code would be kept in memory by the
  # pages it shares with used code.
  target_compile_options(quorvane_compiler INTERFACE -ffunction-sections -fdata-sections)
  target_link_options(quorvane_compiler INTERFACE -Wl,--gc-sections -Wl,-z,pack-relative-relocs)
endif()

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CCACHE_PROGRAM})
endif()
