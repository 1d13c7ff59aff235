#!/usr/bin/env bash
# What the build refuses, it refuses in one line that says what to do: a shared module, versions that are not there.
#
#   refusals.sh MODULE WORK PACKAGES
source "$(dirname "$0")/common.sh"
here=$(cd "$(dirname "$0")" && pwd)
module=$1 work=$2 packages=$3
rm -rf "$work"
unpack "$work/root" "$packages"/libcamera-module-dev_*.deb

# expect_refusal TEXT COMMAND...
expect_refusal() {
    local text=$1
    shift
    said=$("$@" 2>&1) && fail "not refused: $*"
    expect_says "$text"
}

expect_refusal "configure without BUILD_SHARED_LIBS" \
    cmake -S "$module" -B "$work/shared" -G Ninja -DCAMERA_RUNNER=OFF -DCAMERA_TESTS=OFF -DBUILD_SHARED_LIBS=ON
expect_refusal "add -DCAMERA_RUNNER=OFF" cmake -S "$module" -B "$work/no_png" -G Ninja -DCAMERA_PNG=OFF

wanted() {
    rm -rf "$work/user"
    cmake -S "$here/User" -B "$work/user" -G Ninja -DHOW=find_package -DWANTED="$1" -DCMAKE_PREFIX_PATH="$work/root/usr" \
        -DMAIN="$here/User/main.cpp"
}
for version in 1 1.0 1.0.0 1.1; do
    must "find_package(CameraModule $version)" wanted "$version"
done
for version in 1.99 2.0; do
    expect_refusal "requested version" wanted "$version"
done
