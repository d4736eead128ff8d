# SPDX-License-Identifier: Apache-2.0
# Read by ctest for each test program: asks it for its suites and adds an entry for each, named
# "PROGRAM.SUITE" without "_tests". With ZOLT_TEST_CASES in the environment, a filter as for
# --gtest_filter, each test that it matches becomes an entry instead, in a process of its own and with
# the label "cases".
string(REGEX REPLACE "_tests$" "" group "${group}")
set(cases "$ENV{ZOLT_TEST_CASES}")
set(tests)
if(NOT EXISTS "${program}")
    add_test("${group}.NOT_BUILT" "${program}")
elseif(cases STREQUAL "")
    execute_process(COMMAND "${program}" --gtest_list_tests
        OUTPUT_VARIABLE listed RESULT_VARIABLE status)
else()
    execute_process(COMMAND "${program}" --gtest_list_tests "--gtest_filter=${cases}"
        OUTPUT_VARIABLE listed RESULT_VARIABLE status)
endif()
if(EXISTS "${program}" AND NOT status EQUAL 0)
    message(FATAL_ERROR "${program} does not list its tests: ${status}")
endif()

# "Suite.", then its tests, each indented; a comment after "#" gives types and parameters.
string(REGEX REPLACE "[ ]*#[^\n]*" "" listed "${listed}")
string(REPLACE ";" "\\;" listed "${listed}")
string(REPLACE "\n" ";" listed "${listed}")
set(suite)
foreach(line IN LISTS listed)
    if(line MATCHES "^([A-Za-z0-9_/]+)\\.$")
        set(suite "${CMAKE_MATCH_1}")
        if(cases STREQUAL "" AND NOT each_test)
            list(APPEND tests "${suite}.*")
        endif()
    elseif(line MATCHES "^  ([A-Za-z0-9_/]+)$" AND (each_test OR NOT cases STREQUAL ""))
        list(APPEND tests "${suite}.${CMAKE_MATCH_1}")
    endif()
endforeach()

foreach(test IN LISTS tests)
    string(REGEX REPLACE "\\.\\*$" "" name "${group}.${test}")
    add_test("${name}" /usr/bin/python3 -B "${CMAKE_CURRENT_LIST_DIR}/run_suite.py" "${program}" "${test}")
    # Longer than any machine needs.
    set_tests_properties("${name}" PROPERTIES TIMEOUT 7200)
    if(cost)
        set_tests_properties("${name}" PROPERTIES COST "${cost}")
    endif()
    if(environment)
        set_tests_properties("${name}" PROPERTIES ENVIRONMENT "${environment}")
    endif()
    if(NOT cases STREQUAL "")
        set_tests_properties("${name}" PROPERTIES LABELS cases)
    endif()
endforeach()
