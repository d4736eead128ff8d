# SPDX-License-Identifier: Apache-2.0
# Puts values that are chosen at configure time, such as paths, into other languages.

# Sets OUT to VALUE as the text of an XML element.
function(zolt_xml_text out value)
    string(REPLACE "&" "&amp;" value "${value}")
    string(REPLACE "<" "&lt;" value "${value}")
    string(REPLACE ">" "&gt;" value "${value}")
    set(${out} "${value}" PARENT_SCOPE)
endfunction()

# Sets OUT to VALUE as a C string, quotes included, in the form that a compile definition may have:
# CMake splits definitions at ";", drops those with "#", and expands what begins with "$<".
function(zolt_c_string out value)
    string(REPLACE "\\" "\\\\" value "${value}")
    string(REPLACE "\"" "\\\"" value "${value}")
    string(REPLACE ";" "\\073" value "${value}")
    string(REPLACE "#" "\\043" value "${value}")
    string(REPLACE "$" "\\044" value "${value}")
    set(${out} "\"${value}\"" PARENT_SCOPE)
endfunction()
