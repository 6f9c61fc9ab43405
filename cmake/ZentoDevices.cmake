# What the devices' room needs beside the standard library: Asio for the serial line, the dynamic
# loader, and for its tests small libraries that stand in for the vendors'.

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
target_include_directories(zento_devices SYSTEM PRIVATE ${asio_include})
target_compile_definitions(zento_devices PRIVATE ASIO_STANDALONE)

if(WIN32)
  target_compile_definitions(zento_devices PRIVATE _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)
  target_link_libraries(zento_devices PRIVATE ws2_32 mswsock)
else()
  find_package(Threads REQUIRED)
  target_link_libraries(zento_devices PRIVATE ${CMAKE_DL_LIBS} Threads::Threads)
endif()

if(TARGET devices_test)
  target_sources(devices_test PRIVATE tests/support/fake_vendor.cpp)
  target_include_directories(devices_test PRIVATE tests)
  set(stand_ins ${CMAKE_BINARY_DIR}/vendor_libraries)
  function(zento_stand_in folder name source)
    add_library(stand_in_${folder}_${name} MODULE tests/vendor_libraries/${source})
    set_target_properties(stand_in_${folder}_${name} PROPERTIES
      OUTPUT_NAME ${name}
      LIBRARY_OUTPUT_DIRECTORY ${stand_ins}/${folder})
    add_dependencies(devices_test stand_in_${folder}_${name})
  endfunction()
  zento_stand_in(whole pci_dask pci_dask.cpp)
  zento_stand_in(whole apigpib1 apigpib1.cpp)
  zento_stand_in(whole apiaio apiaio.cpp)
  zento_stand_in(incomplete pci_dask apigpib1.cpp)
  target_compile_definitions(devices_test PRIVATE ZENTO_STAND_INS="${stand_ins}")
endif()
