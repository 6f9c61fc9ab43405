# Reads the standard headers that nearly every file includes once instead of hundreds of times. Files
# still include what they use: the presets tidy, fuzz and mingw build without this.

# zento_precompile(TARGET std|test): what is read before each of the target's files.
function(zento_precompile target kind)
  if(NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
    target_precompile_headers(${target} REUSE_FROM zento_precompiled_${kind})
  endif()
endfunction()

# A test program: its own code runs once and is compiled without optimisation, the code it tests is
# the one that is delivered.
add_library(zento_test_options INTERFACE)
target_link_libraries(zento_test_options INTERFACE zento_options)
target_compile_options(zento_test_options INTERFACE -O0 -g1)

if(NOT CMAKE_DISABLE_PRECOMPILE_HEADERS)
  file(WRITE ${CMAKE_BINARY_DIR}/precompiled.cpp "")
  set(std <algorithm> <array> <cmath> <cstddef> <cstdint> <filesystem> <functional> <memory>
          <optional> <span> <string> <string_view> <utility> <variant> <vector>)
  add_library(zento_precompiled_std OBJECT ${CMAKE_BINARY_DIR}/precompiled.cpp)
  target_link_libraries(zento_precompiled_std PRIVATE zento_options)
  target_precompile_headers(zento_precompiled_std PRIVATE ${std})
  if(ZENTO_TESTS)
    add_library(zento_precompiled_test OBJECT ${CMAKE_BINARY_DIR}/precompiled.cpp)
    target_link_libraries(zento_precompiled_test PRIVATE zento_test_options GTest::gmock)
    target_precompile_headers(zento_precompiled_test PRIVATE ${std} <gtest/gtest.h> <gmock/gmock.h>)
  endif()
endif()
