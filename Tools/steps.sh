# Shell functions for ./demo, ./check, ./bench and Tools/*.sh. Sourced, not run; the working directory is the project's
# root afterwards.
#
# step TEXT            prints a headline
# fail TEXT            prints one line of error and exits with status 1
# quietly LOG COMMAND  runs a command with its output in a file; when it fails, prints the file's end and exits
# need PACKAGE...      installs the Debian packages that are missing
# build PRESET         configures and builds a preset

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

step() { printf '\n== %s\n' "$*"; }

fail() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

quietly() {
    local log=$1
    shift
    mkdir -p "$(dirname "$log")"
    "$@" >"$log" 2>&1 && return
    tail -n 40 "$log" >&2
    fail "'$*' failed; its whole output is in $log"
}

as_root() {
    if [ "$(id -u)" = 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        fail "installing packages needs root: run as root, or install sudo"
    fi
}

need() {
    local missing=() package
    command -v dpkg-query >/dev/null || fail "this is no Debian system: install by hand what Tools/steps.sh lists"
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} = 0 ] && return
    step "Installing ${missing[*]}"
    quietly build/apt-update.log as_root apt-get update
    quietly build/apt-install.log as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}"
}

BUILD_PACKAGES="g++ cmake ninja-build pkg-config patch libpng-dev libegl-dev libgles-dev
    libgl1-mesa-dri libegl-mesa0 ca-certificates libpugixml-dev rapidjson-dev zlib1g-dev libzstd-dev"
WINDOW_PACKAGES="libsdl2-dev libimgui-dev"
WINDOW_TEST_PACKAGES="xvfb xdotool imagemagick x11-utils"
TEST_PACKAGES="libgtest-dev libgmock-dev liblodepng-dev clang clang-format clang-tidy"
BENCH_PACKAGES="libbenchmark-dev libglm-dev libcglm-dev libeigen3-dev libyuv-dev libspng-dev liblodepng-dev
    libstb-dev valgrind python3 util-linux"
WINDOW_BENCH_PACKAGES="love xvfb"
PACKAGE_PACKAGES="lintian fakeroot dpkg-dev file gzip clang-16 lld libsfml-dev xvfb xauth"
COVERAGE_PACKAGES="clang llvm python3"
MUTATION_PACKAGES="clang lld python3 python3-clang"
ARM_PACKAGES="g++-arm-linux-gnueabihf qemu-user googletest"

# Installs what builds for 32-bit ARM need. Status 1 when this machine cannot have it.
prepare_armhf() {
    (need $ARM_PACKAGES) && (quietly build/sysroot.log Tools/sysroot.sh armhf build/sysroot-armhf)
}

# build PRESET [TARGET...]
build() {
    local preset=$1
    shift
    Tools/lua_source.sh
    case "$preset" in
    window* | coverage-window) (Tools/source_package.sh build/sources imgui) || echo "The window is built without the camera inspector." ;;
    esac
    step "Building ($preset${*:+: $*})"
    quietly "build/$preset-configure.log" cmake --preset "$preset"
    quietly "build/$preset-build.log" cmake --build --preset "$preset" ${1:+--target} "$@"
}
