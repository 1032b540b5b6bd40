#!/bin/sh
# first_window.sh PAGE CHECK FAX PICTURE FLAGS...: builds what the newcomer's page tells, by its own command with FLAGS
# added, and runs it; in the folder that it is called in.
set -e
page=$1 check=$2 fax=$3 picture=$4
shift 4
awk '/^```cpp/ { inside = 1; next } /^```/ { inside = 0 } inside' "$page" > first.cpp
command=$(grep -m1 '^    c++' "$page")
eval "$command $*"
status=0
QT_QPA_PLATFORM=offscreen timeout 3 ./first "$fax" || status=$?
[ $status = 124 ] || { echo "the first window ended with $status"; exit 1; }
eval "$command -Dmain=first_main $check -lTessarelTesting $*"
QT_QPA_PLATFORM=offscreen ./first "$fax" "$picture"
