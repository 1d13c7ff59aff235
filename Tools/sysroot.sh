#!/usr/bin/env bash
# Downloads the target's libraries for a cross build, as Debian packages, and unpacks them into a folder.
#
#   Tools/sysroot.sh armhf|arm64 FOLDER      a relative FOLDER starts at the project's root
#
# The machine's own packages and architectures do not change: apt-get works on lists, a cache and a status file inside
# the folder, and uses only the machine's package sources. GoogleTest is downloaded as sources and built for the target.
# A folder that is complete is left alone, so a second call costs nothing.
source "$(dirname "$0")/steps.sh"

architecture=${1:-}
folder=${2:-}
case "$architecture" in
armhf) triple=arm-linux-gnueabihf ;;
arm64) triple=aarch64-linux-gnu ;;
*) fail "usage: Tools/sysroot.sh armhf|arm64 FOLDER" ;;
esac
[ -n "$folder" ] || fail "usage: Tools/sysroot.sh armhf|arm64 FOLDER"
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)

# libc, libgcc and libstdc++ are not listed: they come with the cross compiler.
PACKAGES="libpng-dev libpng16-16 zlib1g-dev zlib1g googletest
    libpugixml-dev libpugixml1v5 libzstd-dev libzstd1 rapidjson-dev
    libbenchmark-dev libbenchmark1debian libglm-dev libcglm-dev libeigen3-dev libyuv-dev libyuv0 libjpeg62-turbo
    libspng-dev libspng0 liblodepng-dev liblodepng0 libstb-dev"

private_apt() {
    local apt=$folder/apt
    mkdir -p "$apt/lists/partial" "$apt/archives/partial"
    touch "$apt/status"
    apt-get -o APT::Architecture="$architecture" -o APT::Architectures="$architecture" \
        -o Dir::State="$apt" -o Dir::State::lists="$apt/lists" -o Dir::State::status="$apt/status" \
        -o Dir::Cache="$apt" -o Dir::Cache::archives="$apt/archives" \
        -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache= \
        -o Debug::NoLocking=true -o APT::Sandbox::User=root -o Acquire::Languages=none "$@"
}

fetch() {
    step "Fetching the $architecture libraries"
    # A list that cannot be fetched is no failure yet: packages that are missing fail at the download.
    private_apt update >"$folder/update.log" 2>&1 || echo "some package lists are missing: see $folder/update.log"
    mkdir -p "$folder/packages"
    # shellcheck disable=SC2086
    (cd "$folder/packages" && quietly "$folder/download.log" private_apt download $PACKAGES)
    for package in "$folder"/packages/*.deb; do
        dpkg-deb -x "$package" "$folder"
    done
    rm -rf "$folder/apt" "$folder/packages"
}

# Links to the machine's root point into the folder. Left alone, they dangle, and linkers take the static library instead.
keep_links_inside() {
    local link target
    find "$folder" -type l -lname '/*' | while read -r link; do
        target=$folder$(readlink "$link")
        [ ! -e "$target" ] || ln -sfn "$target" "$link"
    done
}

build_googletest() {
    step "Building GoogleTest for $architecture"
    quietly "$folder/googletest.log" cmake -S "$folder/usr/src/googletest" -B "$folder/googletest" -G Ninja \
        -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/$architecture.cmake" -DCAMERA_SYSROOT="$folder" \
        -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$folder/usr" -DCMAKE_INSTALL_LIBDIR="lib/$triple"
    quietly "$folder/googletest.log" cmake --build "$folder/googletest"
    quietly "$folder/googletest.log" cmake --install "$folder/googletest"
    rm -rf "$folder/googletest"
}

# The stamp file holds the list of packages: when the list changes, everything is fetched again.
stamp=$folder/complete
if [ "$(cat "$stamp" 2>/dev/null)" = "$PACKAGES" ]; then
    keep_links_inside
    exit 0
fi
fetch
keep_links_inside
build_googletest
echo "$PACKAGES" >"$stamp"
