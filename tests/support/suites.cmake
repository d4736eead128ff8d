# SPDX-License-Identifier: Apache-2.0
# Registers the tests of a program with ctest, one entry for each suite. All tests of a suite run in one
# process, since starting the toolkit and a bus takes longer than most tests.
include_guard(GLOBAL)

# zolt_add_suites(TARGET [EACH_TEST] [COST n] [ENVIRONMENT NAME=VALUE ...])
# EACH_TEST: an entry for each test, where a test takes far longer than the start of a process.
# COST: ctest starts entries of a higher one first.
function(zolt_add_suites target)
    cmake_parse_arguments(PARSE_ARGV 1 suites "EACH_TEST" "COST" "ENVIRONMENT")
    set(list "${CMAKE_CURRENT_BINARY_DIR}/${target}-suites.cmake")
    # The suites are read from the program when ctest starts, so that none can be forgotten.
    file(GENERATE OUTPUT "${list}" CONTENT
"set(program [==[$<TARGET_FILE:${target}>]==])
set(group [==[${target}]==])
set(each_test [==[${suites_EACH_TEST}]==])
set(cost [==[${suites_COST}]==])
set(environment [==[${suites_ENVIRONMENT}]==])
include([==[${PROJECT_SOURCE_DIR}/tests/support/list-suites.cmake]==])
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${list}")
endfunction()
