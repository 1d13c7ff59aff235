#!/usr/bin/env bash
# Builds the module for every target that it is promised for, and compares what the builds give, byte for byte.
#
#   Tools/targets.sh [TARGET...]      all of them unless named
#
# On each target: the hashes of Tests/Bits against golden.txt; sine, cosine and arc cosine over parts of all floats
# against the device's hashes; images and saved cameras against those of x86-64. Where the Runner builds, the example
# games too (Tools/compare_runners.sh). A target whose tools cannot be had is left out; the closing line and
# build/targets/left_out.txt name it.
source "$(dirname "$0")/steps.sh"

TARGETS="x86-64 armhf arm64 riscv64 s390x wasm musl armhf-games arm64-games web-games"
WORK=$PWD/build/targets
HASHES=Tests/Bits/golden.txt
TRIGONOMETRY=Tests/Golden/trigonometry.txt
# Denormals, angles that are reduced in one step and in two, 1e22, infinity and NaN, cosines about -1; then
# the floats about each multiple of pi/4, and every 4093rd float.
PARTS="000 3f4 42f 644 7f8 bf7 1000 1001"
EMSCRIPTEN=/usr/share/emscripten
export NODE_PATH=/usr/share/nodejs # where Debian's Emscripten finds its libraries, whichever Node there is

# What a target needs: packages, a folder of libraries for the Runner, the preset of a Runner that plays games there,
# CMake's settings, and the command that starts its programs.
describe() {
    packages="g++ cmake ninja-build"
    sysroot=
    games=
    settings=()
    start=()
    suffix=
    case $1 in
    x86-64) ;;
    armhf) cross arm-linux-gnueabihf qemu-arm ;;
    arm64) cross aarch64-linux-gnu qemu-aarch64 ;;
    riscv64) cross riscv64-linux-gnu qemu-riscv64 ;;
    s390x) cross s390x-linux-gnu qemu-s390x ;;
    wasm)
        packages+=" emscripten"
        settings=(-DCMAKE_TOOLCHAIN_FILE=$EMSCRIPTEN/cmake/Modules/Platform/Emscripten.cmake
            -DCMAKE_CXX_FLAGS="-O2 -msimd128 -msse2" # as the page's Runner is compiled
            -DCMAKE_EXE_LINKER_FLAGS="-sENVIRONMENT=node -sNODERAWFS=1 -sALLOW_MEMORY_GROWTH=1")
        start=(node --no-experimental-fetch) # or its glue takes Node for a browser
        suffix=.js
        ;;
    musl)
        packages+=" clang musl-tools emscripten"
        settings=(-DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/musl.cmake" -DOWN_LIBCXX=ON)
        ;;
    armhf-games)
        packages+=" $ARM_PACKAGES"
        sysroot=armhf
        games=armhf
        ;;
    arm64-games)
        packages+=" g++-aarch64-linux-gnu qemu-user googletest"
        sysroot=arm64
        games=arm64
        ;;
    web-games)
        packages+=" emscripten"
        games=web
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
build_programs() {
    local log=$WORK/$1-build.log
    quietly "$log" cmake -S Tests/Bits/Targets -B "$WORK/$1" -G Ninja -DSOURCES="$PWD/build/sources" \
        -DCMAKE_CXX_FLAGS=-O2 -DCMAKE_C_FLAGS="-O1 -w" "${settings[@]}"
    quietly "$log" cmake --build "$WORK/$1"
}

# run TARGET PROGRAM LOG ARGUMENT...
run() {
    local program=$WORK/$1/$2$suffix log=$3
    shift 3
    quietly "$log" timeout 300 "${start[@]}" "$program" "$@"
}

# Prints "equal/compared": how many lines of a file are among the golden ones, of as many as there should be.
compare_lines() {
    local printed=$1 golden=$2 compared=$3
    echo "$(grep -Fxc -f "$golden" "$printed" || true)/$compared"
}

# The same for the files that x86-64 left, which itself has nothing to be compared with.
compare_files() {
    local equal=0 compared=0 file
    if [ "$1" = x86-64 ]; then
        echo -
        return
    fi
    for file in "$WORK"/x86-64/kept/*; do
        compared=$((compared + 1))
        cmp -s "$file" "$WORK/$1/kept/$(basename "$file")" && equal=$((equal + 1))
    done
    echo "$equal/$compared"
}

# "12/12" is all of them, "0/0" is nothing, "-" is what was not compared.
is_whole() { [ "$1" = - ] || { [ "${1%/*}" = "${1#*/}" ] && [ "$1" != 0/0 ]; }; }

row() { printf '%-12s %7s %13s %7s %7s %8s\n' "$@" | tee -a "$WORK/table.txt"; }

check_bits() {
    local began=$SECONDS kept=$WORK/$1/kept hashes trigonometry files
    build_programs "$1"
    rm -rf "$kept"
    mkdir -p "$kept"
    run "$1" result_hash "$WORK/$1/hashes.txt" --keep "$kept"
    hashes=$(compare_lines "$WORK/$1/hashes.txt" $HASHES "$(wc -l <$HASHES)")
    run "$1" trigonometry_parts "$WORK/$1/trigonometry.txt" $PARTS
    trigonometry=$(compare_lines "$WORK/$1/trigonometry.txt" $TRIGONOMETRY "$(wc -w <<<"$PARTS")")
    files=$(compare_files "$1")
    row "$1" "$hashes" "$trigonometry" "$files" - $((SECONDS - began))
    is_whole "$hashes" && is_whole "$trigonometry" && is_whole "$files"
}

check_games() {
    local began=$SECONDS same
    same=$(Tools/compare_runners.sh "$games") || true
    row "$1" - - - "${same:-none}" $((SECONDS - began))
    [ -n "$same" ] && is_whole "$same"
}

has_tools() {
    (need $packages) || return
    [ "$games" != web ] || (quietly build/web-sources.log Tools/web_sources.sh) || return
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
step "Comparing targets: how many hashes, parts of all floats, files and games are the same"
: >"$WORK/table.txt"
row target hashes trigonometry files games seconds
for target in "${wanted[@]}"; do
    describe "$target"
    check=check_bits
    [ -z "$games" ] || check=check_games
    if ! has_tools; then
        left_out+=("$target")
    elif ! ($check "$target"); then
        differ+=("$target")
    fi
done

echo "${left_out[*]}" >"$WORK/left_out.txt"
[ ${#left_out[@]} = 0 ] || echo "note: left out, as their tools cannot be had here: ${left_out[*]}" >&2
[ ${#differ[@]} = 0 ] || fail "not the same as elsewhere: ${differ[*]}; see $WORK"
