# Asio, header-only: zento_asio for the rooms that wait on the system (the real-time loop and signals,
# the serial line).

find_path(ZENTO_ASIO_INCLUDE asio.hpp HINTS /usr/include)
if(NOT ZENTO_ASIO_INCLUDE)
  message(FATAL_ERROR "Asio is missing (Debian: apt-get install libasio-dev)")
endif()
set(asio_include ${ZENTO_ASIO_INCLUDE})
if(CMAKE_CROSSCOMPILING)
  # Only Asio may come from the build machine's headers.
  set(asio_include ${CMAKE_BINARY_DIR}/asio)
  file(MAKE_DIRECTORY ${asio_include})
  foreach(part asio asio.hpp)
    file(CREATE_LINK ${ZENTO_ASIO_INCLUDE}/${part} ${asio_include}/${part} SYMBOLIC)
  endforeach()
endif()

add_library(zento_asio INTERFACE)
target_include_directories(zento_asio SYSTEM INTERFACE ${asio_include})
target_compile_definitions(zento_asio INTERFACE ASIO_STANDALONE)
if(WIN32)
  target_compile_definitions(zento_asio INTERFACE _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)
  target_link_libraries(zento_asio INTERFACE ws2_32 mswsock)
else()
  find_package(Threads REQUIRED)
  target_link_libraries(zento_asio INTERFACE Threads::Threads)
endif()
