# SPDX-License-Identifier: Apache-2.0
# The options of a build. The default paths are those of an installed television; the presets of the
# virtual set make them relative to the folder in which the program is started, so that any number of
# sets can run from one build.
set(ZOLT_CONFIG_FILE "/usr/apps/org.tizen.zolt-hub/config.xml" CACHE STRING
    "Configuration file that the program reads at start")
set(ZOLT_FLAG_FILE "/opt/usr/apps/org.tizen.zolt-hub/data/service-cond-flag" CACHE STRING
    "Empty file that the program writes at start to let the daemon's unit run")
set(ZOLT_IMAGE_TYPE_DIR "/etc" CACHE STRING
    "Folder in which a file named release, debug or perf tells the kind of firmware image")
set(ZOLT_PLATFORM "host" CACHE STRING
    "host: the virtual set; television: the libraries of ZOLT_PLATFORM_LIBRARIES")
set_property(CACHE ZOLT_PLATFORM PROPERTY STRINGS host television)
set(ZOLT_PLATFORM_LIBRARIES "" CACHE STRING
    "Libraries that implement the television's interfaces, as for the linker; without them no program is linked")
set(ZOLT_SANITIZE "" CACHE STRING "Sanitizers, as for -fsanitize=, or empty")
option(ZOLT_COVERAGE "Count executed lines and branches" OFF)
option(ZOLT_WERROR "Treat compiler warnings as errors" ON)

# Every target of the project links this: warnings, and the options of sanitizers and coverage.
add_library(zolt_build_options INTERFACE)
target_compile_options(zolt_build_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
    -Wformat=2 -Wundef $<$<BOOL:${ZOLT_WERROR}>:-Werror>)
if(ZOLT_SANITIZE)
    target_compile_options(zolt_build_options INTERFACE
        -fsanitize=${ZOLT_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
    target_link_options(zolt_build_options INTERFACE -fsanitize=${ZOLT_SANITIZE})

    set(suppressions_dir "${CMAKE_CURRENT_SOURCE_DIR}/tests/support")
    set(suppression_files leaks.supp toolkit.supp toolkit-races.supp)
    list(TRANSFORM suppression_files PREPEND "${suppressions_dir}/")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${suppression_files})
    file(READ "${suppressions_dir}/leaks.supp" deliberate_leaks)
    file(READ "${suppressions_dir}/toolkit.supp" toolkit_leaks)
    file(READ "${suppressions_dir}/toolkit-races.supp" ZOLT_RACE_SUPPRESSIONS)
    set(ZOLT_LEAK_SUPPRESSIONS "${deliberate_leaks}\n${toolkit_leaks}")
    configure_file("${CMAKE_CURRENT_LIST_DIR}/SanitizerDefaults.cpp.in"
        "${CMAKE_BINARY_DIR}/SanitizerDefaults.cpp" @ONLY)
    # In executables only: a library would add a second copy.
    target_sources(zolt_build_options INTERFACE
        $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:${CMAKE_BINARY_DIR}/SanitizerDefaults.cpp>)
endif()
if(ZOLT_COVERAGE)
    target_compile_options(zolt_build_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(zolt_build_options INTERFACE --coverage)
endif()
