# GoogleTest from the sources that Debian ships (package googletest), compiled for the target.
set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
set(BUILD_GMOCK OFF CACHE BOOL "" FORCE)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
foreach(library gtest gtest_main)
  target_compile_options(${library} PRIVATE -O0 -g0)  # half a minute of a build from nothing, and nothing in the tests
endforeach()
include(cmake/retouch_add_gtest.cmake)
