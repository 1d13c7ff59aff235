#!/usr/bin/env bash
# The packages for 32-bit ARM, unpacked: the cross compiler links against them, and what it makes runs in the emulator.
#
#   armhf.sh PACKAGES WORK HOST TOOLCHAIN EMULATOR...      HOST: an archive with a host, for ARM
source "$(dirname "$0")/common.sh"
here=$(cd "$(dirname "$0")" && pwd)
packages=$1 work=$2 host=$3 toolchain=$4
shift 4
usr=$work/root/usr
unpack "$work/root" "$packages"/*.deb

must "configuring" cmake -S "$here/User" -B "$work/user" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
    -DHOW=find_package -DWANTED=1.1 -DCameraModule_DIR="$usr/lib/arm-linux-gnueabihf/cmake/CameraModule" \
    -DMAIN="$here/User/main.cpp" -DHOST="$host"
must "building" cmake --build "$work/user" --target user
must "running" "$@" "$work/user/user"
expect_says "camera 0 shows 640 x 480"

# The examples, but for the one whose library is not there for ARM.
for folder in "$usr"/share/doc/libcamera-module-dev/examples/*/; do
    name=$(basename "$folder")
    [ "$name" != sfml_host ] || continue
    must "configuring $name" cmake -S "$folder" -B "$work/$name" -G Ninja -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
        -DCameraModule_DIR="$usr/lib/arm-linux-gnueabihf/cmake/CameraModule"
    must "building $name" cmake --build "$work/$name"
    must "running $name" "$@" "$work/$name/$name"
done

must "the Runner" "$@" "$usr/bin/camera-module-runner" "$usr/share/camera-module-runner/Games/canyon/canyon.lua" \
    --frames 3 --check --no-draw --out "$work/out"
