# SPDX-License-Identifier: Apache-2.0
# The libraries of the distribution, each as an imported target.
find_package(PkgConfig REQUIRED)
find_package(Threads REQUIRED)
pkg_check_modules(ELEMENTARY REQUIRED IMPORTED_TARGET elementary edje evas ecore ecore-x eina)
pkg_check_modules(GIO REQUIRED IMPORTED_TARGET gio-2.0 gio-unix-2.0 gobject-2.0 glib-2.0)
pkg_check_modules(LIBXML2 REQUIRED IMPORTED_TARGET libxml-2.0)
find_package(Boost 1.74 REQUIRED COMPONENTS regex thread system date_time)
find_package(OpenSSL REQUIRED COMPONENTS Crypto)
# Tests are built for the virtual set alone.
if(ZOLT_PLATFORM STREQUAL "host")
    find_package(GTest REQUIRED)
endif()

# Debian's Elementary names include folders that no package installs; CMake refuses those.
get_target_property(elementary_folders PkgConfig::ELEMENTARY INTERFACE_INCLUDE_DIRECTORIES)
foreach(folder IN LISTS elementary_folders)
    if(NOT IS_DIRECTORY "${folder}")
        list(REMOVE_ITEM elementary_folders "${folder}")
    endif()
endforeach()
set_target_properties(PkgConfig::ELEMENTARY PROPERTIES
    INTERFACE_INCLUDE_DIRECTORIES "${elementary_folders}")
