#!/usr/bin/env bash
# Builds the module for every target that it is promised for, and compares what the builds give, byte for byte.
#
#   Tools/targets.sh [TARGET...]      all of them unless named
#
# On each target: the hashes of Tests/Bits against golden.txt; images and saved cameras against those of x86-64. Where
# the Runner builds, the example games too (Tools/compare_runners.sh). A target whose tools cannot be had is left out;
# the closing line and build/targets/left_out.txt name it.
source "$(dirname "$0")/steps.sh"

TARGETS="x86-64 armhf arm64 riscv64 s390x wasm musl armhf-games arm64-games"
WORK=$PWD/build/targets
GOLDEN=Tests/Bits/golden.txt
EMSCRIPTEN=/usr/share/emscripten
export NODE_PATH=/usr/share/nodejs # where Debian's Emscripten finds its libraries, whichever Node there is

# What a target needs: packages, a folder of libraries for the Runner, CMake's settings, and the command that starts
# its programs.
describe() {
    packages="g++ cmake ninja-build"
    sysroot=
    settings=()
    start=()
    program=result_hash
    case $1 in
    x86-64) ;;
    armhf) cross arm-linux-gnueabihf qemu-arm ;;
    arm64) cross aarch64-linux-gnu qemu-aarch64 ;;
    riscv64) cross riscv64-linux-gnu qemu-riscv64 ;;
    s390x) cross s390x-linux-gnu qemu-s390x ;;
    wasm)
        packages+=" emscripten"
        settings=(-DCMAKE_TOOLCHAIN_FILE=$EMSCRIPTEN/cmake/Modules/Platform/Emscripten.cmake
            -DCMAKE_EXE_LINKER_FLAGS="-sENVIRONMENT=node -sNODERAWFS=1 -sALLOW_MEMORY_GROWTH=1")
        start=(node --no-experimental-fetch) # or its glue takes Node for a browser
        program=result_hash.js
        ;;
    musl)
        packages+=" clang musl-tools emscripten"
        settings=(-DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/musl.cmake" -DOWN_LIBCXX=ON)
        ;;
    armhf-games)
        packages+=" $ARM_PACKAGES"
        sysroot=armhf
        ;;
    arm64-games)
        packages+=" g++-aarch64-linux-gnu qemu-user googletest"
        sysroot=arm64
        ;;
    *) fail "no target '$1': there are $TARGETS" ;;
    esac
}

# Linked statically, so that the emulator needs nothing of the target.
cross() {
    packages+=" g++-$1 qemu-user"
    settings=(-DCMAKE_SYSTEM_NAME=Linux -DCMAKE_C_COMPILER="$1-gcc" -DCMAKE_CXX_COMPILER="$1-g++"
        -DCMAKE_EXE_LINKER_FLAGS=-static)
    start=("$2")
}

# Compiles with -O2 and nothing that keeps floats strict: the sources must do that alone.
build_hashes() {
    local log=$WORK/$1-build.log
    quietly "$log" cmake -S Tests/Bits/Targets -B "$WORK/$1" -G Ninja -DSOURCES="$PWD/build/sources" \
        -DCMAKE_CXX_FLAGS=-O2 -DCMAKE_C_FLAGS="-O1 -w" "${settings[@]}"
    quietly "$log" cmake --build "$WORK/$1"
}

# Prints "equal/compared" for the lines of the golden file.
compare_hashes() {
    local equal compared
    compared=$(wc -l <"$GOLDEN")
    equal=$(grep -Fxc -f "$GOLDEN" "$WORK/$1/hashes.txt" || true)
    echo "$equal/$compared"
}

# The same for the files that x86-64 left.
compare_files() {
    local equal=0 compared=0 file
    for file in "$WORK"/x86-64/kept/*; do
        compared=$((compared + 1))
        cmp -s "$file" "$WORK/$1/kept/$(basename "$file")" && equal=$((equal + 1))
    done
    echo "$equal/$compared"
}

# "12/12" is all of them, "0/0" is nothing.
is_whole() { [ "${1%/*}" = "${1#*/}" ] && [ "$1" != 0/0 ]; }

row() { printf '%-12s %7s %7s %7s %8s\n' "$@" | tee -a "$WORK/table.txt"; }

check_hashes() {
    local began=$SECONDS hashes files
    build_hashes "$1"
    rm -rf "$WORK/$1/kept"
    mkdir -p "$WORK/$1/kept"
    quietly "$WORK/$1/hashes.txt" timeout 300 "${start[@]}" "$WORK/$1/$program" --keep "$WORK/$1/kept"
    hashes=$(compare_hashes "$1")
    files=$(compare_files "$1")
    row "$1" "$hashes" "$files" - $((SECONDS - began))
    is_whole "$hashes" && is_whole "$files"
}

check_games() {
    local began=$SECONDS games
    games=$(Tools/compare_runners.sh "$sysroot") || true
    row "$1" - - "$games" $((SECONDS - began))
    is_whole "$games"
}

has_tools() {
    (need $packages) || return
    [ -z "$sysroot" ] || (quietly "build/sysroot-$sysroot.log" Tools/sysroot.sh "$sysroot" "build/sysroot-$sysroot")
}

wanted=("$@")
[ $# -gt 0 ] || read -ra wanted <<<"$TARGETS"
for target in "${wanted[@]}"; do
    describe "$target"
done
[ "${wanted[0]}" = x86-64 ] || wanted=(x86-64 "${wanted[@]}")

mkdir -p "$WORK"
left_out=()
differ=()
if ! Tools/source_package.sh build/sources zlib libpng1.6; then
    left_out=("${wanted[@]}")
    wanted=()
fi
step "Comparing targets: how many hashes, files and games are the same"
: >"$WORK/table.txt"
row target hashes files games seconds
for target in "${wanted[@]}"; do
    describe "$target"
    check=check_hashes
    [ -z "$sysroot" ] || check=check_games
    if ! has_tools; then
        left_out+=("$target")
    elif ! ($check "$target"); then
        differ+=("$target")
    fi
done

echo "${left_out[*]}" >"$WORK/left_out.txt"
[ ${#left_out[@]} = 0 ] || echo "note: left out, as their tools cannot be had here: ${left_out[*]}" >&2
[ ${#differ[@]} = 0 ] || fail "not the same as elsewhere: ${differ[*]}; see $WORK"
