# SPDX-License-Identifier: Apache-2.0
# A private bus with the stand-in daemon, for the tests that need one.
include_guard(GLOBAL)
add_library(zolt_test_bus STATIC
    ${CMAKE_CURRENT_LIST_DIR}/PrivateBus.cpp ${CMAKE_CURRENT_LIST_DIR}/PrivateBus.h)
target_compile_definitions(zolt_test_bus PRIVATE ZOLT_DAEMON_PROGRAM="$<TARGET_FILE:zolt-daemon>")
target_link_libraries(zolt_test_bus PUBLIC zolt_test_support PRIVATE zolt_build_options)
add_dependencies(zolt_test_bus zolt-daemon)
