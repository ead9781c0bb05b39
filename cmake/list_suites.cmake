# Run by ctest: registers one test for each suite of a GoogleTest program (see retouch_add_gtest.cmake).
# A program that cannot be asked becomes a test that fails, so that it is not lost.
set(listing "")
set(status "not built")
if(EXISTS "${program}")
  execute_process(COMMAND ${emulator} "${program}" --gtest_list_tests
    OUTPUT_VARIABLE listing ERROR_VARIABLE errors RESULT_VARIABLE status TIMEOUT 120)
endif()
if(NOT status STREQUAL "0")
  add_test("${name}.list" "${CMAKE_COMMAND}" -E false)
else()
  string(REGEX MATCHALL "(^|\n)[A-Za-z_][A-Za-z0-9_/]*\\." suites "${listing}")
  foreach(suite IN LISTS suites)
    string(REGEX REPLACE "[\n.]" "" suite "${suite}")
    if(NOT suite MATCHES "(^|/)DISABLED_")
      string(REPLACE "/" "." label "${suite}")
      add_test("${name}.${label}" ${emulator} "${program}" "--gtest_filter=${suite}.*" --gtest_brief=1)
      set_tests_properties("${name}.${label}" PROPERTIES
        WORKING_DIRECTORY "${directory}" TIMEOUT ${timeout} RUN_SERIAL ${serial})
    endif()
  endforeach()
endif()
