#!/usr/bin/env bash
# The packages are installed into a root of their own with an empty database, used, and removed without a trace.
#
#   private_root.sh PACKAGES WORK HOST COMPILER      HOST: an archive with a host
source "$(dirname "$0")/common.sh"
here=$(cd "$(dirname "$0")" && pwd)
packages=$1 work=$2 host=$3 compiler=$4
root=$work/root
version=$(dpkg-deb -f "$packages"/libcamera-module-dev_*.deb Version)

# Whoever is not root plays root: dpkg changes owners inside the folder.
export PATH=$PATH:/usr/sbin:/sbin
play_root=()
[ "$(id -u)" = 0 ] || play_root=(fakeroot)
private_dpkg() { "${play_root[@]}" dpkg --root="$root" --force-not-root --force-depends "$@"; }
state_of() { dpkg-query --admindir="$root/var/lib/dpkg" -W -f='${db:Status-Abbrev}' "$1" 2>/dev/null || echo none; }

rm -rf "$work"
mkdir -p "$root"/var/lib/dpkg/{info,updates,triggers}
touch "$root"/var/lib/dpkg/{status,available}

# What the packages depend on is not in the private root: it must be on the machine, by the names that they give.
for package in "$packages"/*.deb; do
    for name in $(depends_of "$package"); do
        must "$(basename "$package") depends on what is not there" dpkg-query -W "$name"
    done
done

must "installing" private_dpkg -i "$packages"/*.deb
for name in libcamera-module-dev camera-module-runner; do
    [ "$(state_of $name)" = "ii " ] || fail "$name is not installed but '$(state_of $name)'"
done

# Used from another place than where it was installed: no file remembers a path.
mv "$root" "$work/moved"
usr=$work/moved/usr
library=$(dirname "$(find "$usr/lib" -name libcamera_module.a)")
! grep -rIl "$root" "$usr" || fail "the files above name the folder where they were installed"

must "configuring" cmake -S "$here/User" -B "$work/user" -G Ninja -DCMAKE_CXX_COMPILER="$compiler" \
    -DHOW=find_package -DWANTED=1.1 -DCMAKE_PREFIX_PATH="$usr" -DMAIN="$here/User/main.cpp" -DHOST="$host"
must "building" cmake --build "$work/user" --target user
must "running" "$work/user/user"
expect_says "version $version, archive the same"
expect_says "camera 0 shows 640 x 480"

must "pkg-config" env PKG_CONFIG_PATH="$library/pkgconfig" pkg-config --cflags --libs "camera_module >= 1.1"
must "building with pkg-config" "$compiler" -std=c++17 "$here/User/main.cpp" -o "$work/with_pkg_config" \
    -Wl,--whole-archive "$host" -Wl,--no-whole-archive $said
must "running" "$work/with_pkg_config"
expect_says "camera 0 shows 640 x 480"

must "a shared library of the archive" "$compiler" -shared -o "$work/module.so" \
    -Wl,--whole-archive "$library/libcamera_module.a" -Wl,--no-whole-archive -lpng

must "the installed Runner" "$usr/bin/camera-module-runner" --version
expect_says "$version"
must "an installed game" "$usr/bin/camera-module-runner" "$usr/share/camera-module-runner/Games/canyon/canyon.lua" \
    --frames 3 --check --quiet --out "$work/out"
[ -s "$work/out/last_frame.png" ] || fail "the installed Runner drew no picture"
cat > "$work/kit_game.lua" <<'GAME'
local kit = include("kit/camera_kit.lua")
room_add{ views = { [0] = {} }, create = function() kit.camera{ view = 0 } end, step = function() kit.step() end }
log("the kit's version: " .. kit.version)
GAME
must "a game with the installed kit" "$usr/bin/camera-module-runner" "$work/kit_game.lua" --frames 3 --no-draw --out "$work/out"
expect_says "the kit's version: 1"

mv "$work/moved" "$root"
must "removing" private_dpkg -P libcamera-module-dev camera-module-runner
left=$(find "$root" -mindepth 1 -not -path "$root/var*")
[ -z "$left" ] || fail "left behind: $left"
