# What the devices' room needs beside the standard library: Asio for the serial line, the dynamic
# loader, and for its tests small libraries that stand in for the vendors'.

target_link_libraries(zento_devices PRIVATE zento_asio)
if(NOT WIN32)
  target_link_libraries(zento_devices PRIVATE ${CMAKE_DL_LIBS})
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
