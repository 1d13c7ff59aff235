#!/usr/bin/env bash
# Makes the Debian packages twice: the same sources give the same bytes. The packages stay for the other tests.
#
#   build_packages.sh BUILD WORK [ARCHITECTURE]      the machine's own unless given
source "$(dirname "$0")/common.sh"
build=$1 work=$2 architecture=${3:-$(dpkg --print-architecture)}

export SOURCE_DATE_EPOCH=1700000000
rm -rf "$work"
for run in first second; do
    mkdir -p "$work/$run"
    must "making packages" cpack --config "$build/CPackConfig.cmake" -B "$work/$run"
    rm -rf "$work/$run/_CPack_Packages"
    sleep 1 # a second later than the first, should a clock get in
done

for name in libcamera-module-dev camera-module-runner; do
    first=$(echo "$work"/first/"$name"_*_"$architecture".deb)
    [ -e "$first" ] || fail "there is no package $name for $architecture in $work/first: $(ls "$work/first")"
    must "a second time" cmp "$first" "$work/second/$(basename "$first")"
done
rm -rf "$work/second"
