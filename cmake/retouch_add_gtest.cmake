# join_test_sources(TARGET): compiles the sources of a target of tests eight at a time. They share headers and the templates
# of GoogleTest, so that takes half the processor's time. Without it a change in one of them compiles it alone.
option(RETOUCH_JOIN_TESTS "Compile the sources of tests in groups" ON)
function(join_test_sources target)
  set_target_properties(${target} PROPERTIES UNITY_BUILD ${RETOUCH_JOIN_TESTS} UNITY_BUILD_BATCH_SIZE 8)
endfunction()

# retouch_add_gtest(TARGET NAME [SESSION] [ALONE suite...] [TIMEOUT seconds])
# Registers the test program TARGET with ctest, one entry for each of its suites: "NAME.Suite". One
# entry for each case would start the program thousands of times (0.1 s each under Wine); one entry for
# the whole program would let a hanging case hide all others.
#   SESSION   the suites drive real windows with the one real pointer, so nothing runs beside them
#   ALONE     these suites of the program run alone as well, the others do not; a name that no suite has is a test that
#             fails, "NAME.suite"
#   TIMEOUT   for one suite, 300 seconds unless given
# The suites are asked of the program when ctest starts, so a new suite needs no new configuration.
function(retouch_add_gtest target name)
  target_link_libraries(${target} PRIVATE retouch_test_flags)
  join_test_sources(${target})
  cmake_parse_arguments(arg "SESSION" "TIMEOUT" "ALONE" ${ARGN})
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 300)
  endif()
  set(serial FALSE)
  if(arg_SESSION)
    set(serial TRUE)
  endif()
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${target}-suites.cmake)
  file(GENERATE OUTPUT ${file} CONTENT "
set(program [==[$<TARGET_FILE:${target}>]==])
set(emulator [==[${CMAKE_CROSSCOMPILING_EMULATOR}]==])
set(name [==[${name}]==])
set(serial ${serial})
set(alone ${arg_ALONE})
set(timeout ${arg_TIMEOUT})
set(directory [==[$<TARGET_FILE_DIR:${target}>]==])
include([==[${CMAKE_SOURCE_DIR}/cmake/list_suites.cmake]==])
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${file})
endfunction()

# retouch_add_gtest_in_locale(TARGET NAME LOCALE CODE_PAGE SUITE)
# Runs a suite of the Windows test program TARGET once more in a locale from which Wine takes another code page
# for the system; ctest entry "NAME.Suite.LOCALE". The suite finds the code page to expect in RETOUCH_CODE_PAGE.
# Alone, because programs of one Wine prefix share the lists of fonts, which follow the code page.
function(retouch_add_gtest_in_locale target name locale code_page suite)
  set(test ${name}.${suite}.${locale})
  add_test(NAME ${test} COMMAND ${target} --gtest_filter=${suite}.* --gtest_brief=1
    WORKING_DIRECTORY $<TARGET_FILE_DIR:${target}>)
  set_tests_properties(${test} PROPERTIES TIMEOUT 300 RUN_SERIAL TRUE
    ENVIRONMENT "LOCPATH=${CMAKE_BINARY_DIR}/locale;LC_ALL=${locale}.UTF-8;RETOUCH_CODE_PAGE=${code_page}")
endfunction()
