#!/usr/bin/env bash
# A project that takes the module in gets its library and nothing else: no tests, no Runner, no warnings as errors, no
# files installed, no target with a common name; and it may build shared libraries of its own.
#
#   subproject.sh add_subdirectory|FetchContent MODULE WORK HOST
source "$(dirname "$0")/common.sh"
here=$(cd "$(dirname "$0")" && pwd)
how=$1 module=$2 work=$3 host=$4
rm -rf "$work"
must "configuring" cmake -S "$here/User" -B "$work/build" -G Ninja -DHOW="$how" -DMODULE="$module" \
    -DMAIN="$here/User/main.cpp" -DHOST="$host" -DBUILD_SHARED_LIBS=ON
expect_says "always a static library"
must "building" cmake --build "$work/build"
must "running" "$work/build/user"
expect_says "camera 0 shows 640 x 480"

! grep -q -e -Werror "$work/build/build.ninja" || fail "warnings of the module are errors in another project"
must "looking for position-independent code" grep -q -e -fPIC "$work/build/build.ninja"
must "counting tests" ctest --test-dir "$work/build" -N
expect_says "Total Tests: 0"
must "installing" cmake --install "$work/build" --prefix "$work/installed"
[ "$(find "$work/installed" -type f)" = "$work/installed/bin/user" ] ||
    fail "installed besides the project's own program: $(find "$work/installed" -type f)"
