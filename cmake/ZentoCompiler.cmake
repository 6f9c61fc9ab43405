# Compiler settings that every target shares.

add_library(zento_options INTERFACE)
target_include_directories(zento_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(zento_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor
  -Woverloaded-virtual -Wold-style-cast -Wimplicit-fallthrough -Werror
  # The same bits from every compiler: no fused multiply-add behind our back.
  -ffp-contract=off)

# GCC 12 warns of overlaps, reads and copies past the end inside std::string that cannot happen (its
# bugs 105651 and 105329).
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(zento_options INTERFACE -Wno-restrict -Wno-array-bounds
    -Wno-stringop-overread -Wno-stringop-overflow)
endif()

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()
# Lines for backtraces; types and variables would double what the compiler writes.
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")

if(ZENTO_SANITIZE)
  add_compile_options(-fsanitize=${ZENTO_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${ZENTO_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # GCC 12 takes std::regex and std::optional for uninitialised when the sanitizers are on.
    add_compile_options(-Wno-maybe-uninitialized)
  endif()
endif()

if(ZENTO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

if(ZENTO_TIDY)
  find_program(ZENTO_CLANG_TIDY NAMES clang-tidy clang-tidy-14 REQUIRED)
  set(CMAKE_CXX_CLANG_TIDY ${ZENTO_CLANG_TIDY} --quiet)
endif()

find_program(ZENTO_CCACHE ccache)
if(ZENTO_CCACHE AND NOT ZENTO_TIDY)
  # Without these two the cache leaves files with precompiled headers alone.
  set(CMAKE_CXX_COMPILER_LAUNCHER
    ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${ZENTO_CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(-fpch-preprocess)
  endif()
endif()

if(NOT WIN32)
  find_program(ZENTO_LLD NAMES ld.lld)
  if(ZENTO_LLD)
    add_link_options(-fuse-ld=lld)
  endif()
else()
  add_link_options(-static)
endif()
