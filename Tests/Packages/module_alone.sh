#!/usr/bin/env bash
# The module alone, without the PNG writer, takes neither libpng nor Lua nor OpenGL; nor do its packages.
#
#   module_alone.sh MODULE WORK HOST      HOST: an archive with a host
source "$(dirname "$0")/common.sh"
here=$(cd "$(dirname "$0")" && pwd)
module=$1 work=$2 host=$3
rm -rf "$work"

# Nothing that looks for another library finds one.
hidden=(-DCMAKE_DISABLE_FIND_PACKAGE_PNG=ON -DCMAKE_DISABLE_FIND_PACKAGE_ZLIB=ON -DCMAKE_DISABLE_FIND_PACKAGE_PkgConfig=ON
    -DCAMERA_LUA=/nonexistent)
must "configuring" cmake -S "$module" -B "$work/build" -G Ninja -DCAMERA_RUNNER=OFF -DCAMERA_TESTS=OFF -DCAMERA_PNG=OFF \
    -DCMAKE_CXX_FLAGS=-O0 "${hidden[@]}"
must "building" cmake --build "$work/build"
! nm -C "$work/build/libcamera_module.a" 2>/dev/null | grep -E 'png_|WritePNG32|LoadSave' ||
    fail "the names above belong to the PNG writer"

must "making the package" cpack --config "$work/build/CPackConfig.cmake" -B "$work/packages"
package=$(echo "$work"/packages/libcamera-module-dev_*.deb)
[ -z "$(depends_of "$package")" ] || fail "the package depends on: $(depends_of "$package")"
unpack "$work/root" "$package"
! grep -ril png "$work"/root/usr/lib/*/pkgconfig || fail "the pkg-config file above asks for libpng"

# The host brings a PNG writer of its own: its name is not defined twice.
cat "$here/User/main.cpp" - >"$work/main.cpp" <<'EOF'
int WritePNG32(char*, void*, int, int) { return 1; }
EOF
must "configuring a user" cmake -S "$here/User" -B "$work/user" -G Ninja -DHOW=find_package -DWANTED=1.0 \
    -DCMAKE_PREFIX_PATH="$work/root/usr" -DMAIN="$work/main.cpp" -DHOST="$host" "${hidden[@]}"
must "building a user" cmake --build "$work/user" --target user
must "running" "$work/user/user"
expect_says "camera 0 shows 640 x 480"
