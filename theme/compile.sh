#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Compiles the theme and fails on any warning of the compiler: usage is compile.sh SOURCE PICTURES OUTPUT.
# The compiler has no switch that turns its warnings into errors, so its output is searched. Libraries may
# print warnings of their own, for instance on a loaded machine, which are ignored.
set -u
source=$1 pictures=$2 output=$3
words=$(EINA_LOG_LEVEL=1 EINA_LOG_LEVELS=edje_cc:2,edje:2 EINA_LOG_BACKTRACE=-1 \
    "${EDJE_CC:-edje_cc}" -id "$pictures" -threads "$source" "$output" 2>&1)
status=$?
[ -z "$words" ] || printf '%s\n' "$words" >&2
if [ $status -ne 0 ] || printf '%s\n' "$words" | grep -q 'edje_cc'; then
    rm -f "$output"
    exit 1
fi
chmod a+r "$output"
