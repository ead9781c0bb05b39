# cmake --install BUILD --prefix FOLDER: what a maker of a host takes along, and the host program.
include(GNUInstallDirs)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/kovrtch32)

install(TARGETS kovrtch32 kovctrl32 retouch_host RUNTIME DESTINATION bin)
install(DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/guide ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}/licences DESTINATION bin)
install(FILES $<TARGET_LINKER_FILE:kovrtch32> DESTINATION ${CMAKE_INSTALL_LIBDIR} RENAME libkovrtch32.a)
if(RETOUCH_IMPORT_LIBRARY)
  install(FILES ${RETOUCH_IMPORT_LIBRARY} DESTINATION ${CMAKE_INSTALL_LIBDIR})
endif()
install(FILES ${CMAKE_SOURCE_DIR}/resources/${RETOUCH_DEFINITION} DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RENAME kovrtch32.def)
install(FILES ${CMAKE_SOURCE_DIR}/include/kovrtch32.h DESTINATION include)

# find_package(kovrtch32) gives the target kovrtch32::kovrtch32.
include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/kovrtch32-config.cmake.in ${CMAKE_BINARY_DIR}/kovrtch32-config.cmake
  INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/kovrtch32-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/kovrtch32-config.cmake ${CMAKE_BINARY_DIR}/kovrtch32-config-version.cmake
  DESTINATION ${package_folder})
