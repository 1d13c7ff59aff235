#!/bin/sh
# The starter host, copied from the installed package as a user would copy it: it builds without a warning with the
# compiler and its flags, and prints what the rules of following say.
#
#   starter_host.sh CMAKE BUILD WORK COMPILER [FLAG...]
#
# BUILD: the module's build tree. WORK: a folder of the test's own.
set -eu
cmake=$1 build=$2 work=$3 compiler=$4
shift 4
flags="-Wall -Wextra -Wpedantic -Wconversion -Werror $*"

fail() {
    echo "$compiler $flags: $1" >&2
    exit 1
}

rm -rf "$work"
mkdir -p "$work"
"$cmake" --install "$build" --prefix "$work/installed" >"$work/log"
cp -r "$work/installed/share/doc/libcamera-module-dev/examples/starter_host" "$work/host"
cd "$work/host"

# Calls of the module in main.cpp, by statements.
calls=$(sed 's,//.*,,' main.cpp | tr '\n' ' ' | grep -oE '[^;{}]*(g_CM\.|camera->|again->)[^;{}]*;' | wc -l)
[ "$calls" -gt 0 ] && [ "$calls" -le 15 ] || fail "main.cpp calls the module in $calls statements, not in 1 to 15"

CMAKE_PREFIX_PATH=$work/installed "$cmake" -B build -G Ninja -DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS=$flags" \
    "-DCMAKE_CXX_COMPILER=$compiler" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "it cannot be configured"; }
"$cmake" --build build >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "it cannot be built"; }
[ ! -e build/starter_host_check ] || build/starter_host_check --level follow --same-bits >"$work/log" 2>&1 ||
    { cat "$work/log" >&2; fail "it breaks a promise of the level follow"; }
build/starter_host >"$work/output" || fail "status $?: $(cat "$work/output")"

# The same ten and ten frames by the definition, in whole numbers. One axis: the edge follows so far that the target is
# a border away from both edges, or stands in the centre where the borders leave no room; then the room, then the speed.
awk '
function step(edge, size, border, speed, target, room,   wanted) {
    wanted = edge
    if (2 * border >= size) wanted = target - size / 2
    else if (target - border < edge) wanted = target - border
    else if (target + border > edge + size) wanted = target + border - size
    if (wanted < 0) wanted = 0
    if (wanted + size > room) wanted = room - size
    if (speed >= 0 && wanted > edge + speed) wanted = edge + speed
    if (speed >= 0 && wanted < edge - speed) wanted = edge - speed
    return wanted
}
function show(frame, name, x, y, w, h) {
    printf "  frame %2d, %-5s shows %6.1f, %6.1f, %5.1f x %5.1f\n", frame, name, x, y, w, h
}
BEGIN {
    walkerX = 200; walkerY = 300; leftX = 0; leftY = 0; rightX = 40; rightY = 180
    for (frame = 0; frame < 20; ++frame) {
        if (frame % 10 == 0) print (frame ? "ten more" : "ten frames")
        walkerX += 8; walkerY += 2
        leftX = step(leftX, 320, 100, -1, walkerX, 1000); leftY = step(leftY, 240, 60, -1, walkerY, 600)
        rightX = step(rightX, 160, 80, 6, walkerX, 1000); rightY = step(rightY, 120, 60, 6, walkerY, 600)
        show(frame % 10 + 1, "left", leftX, leftY, 320, 240)
        show(frame % 10 + 1, "right", rightX, rightY, 160, 120)
    }
    # The table of 2 slots: its length, a mark and 112 items for each camera; then the walker.
    printf "saved in %d bytes; after loading, the ten frames are the same\n", 4 * (1 + 2 * (1 + 112) + 2)
}' >"$work/expected"
diff "$work/expected" "$work/output" >&2 || fail "it shows something else"
