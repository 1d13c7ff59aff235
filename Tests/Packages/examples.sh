#!/usr/bin/env bash
# Each host in the package's folder of examples is a project that builds from the installed package alone; the program of
# its name runs and ends with status 0. The one on SFML draws on a virtual display and checks its own picture.
#
#   examples.sh PACKAGES WORK COMPILER
source "$(dirname "$0")/common.sh"
packages=$1 work=$2 compiler=$3
rm -rf "$work"
unpack "$work/root" "$packages"/libcamera-module-dev_*.deb

built=0
for folder in "$work"/root/usr/share/doc/libcamera-module-dev/examples/*/; do
    name=$(basename "$folder")
    must "configuring $name" cmake -S "$folder" -B "$work/$name" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
        -DCMAKE_PREFIX_PATH="$work/root/usr" -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror"
    must "building $name" cmake --build "$work/$name"
    case $name in
    sfml_host)
        must "running $name" env LIBGL_ALWAYS_SOFTWARE=1 xvfb-run -a -s "-screen 0 1280x800x24" \
            "$work/$name/$name" --frames 130 --picture "$work/$name/picture.png"
        expect_says "view 2: the car"
        [ -s "$work/$name/picture.png" ] || fail "$name wrote no picture"
        ;;
    *) must "running $name" "$work/$name/$name" ;;
    esac
    built=$((built + 1))
done
[ "$built" -gt 0 ] || fail "there are no examples in the package"
