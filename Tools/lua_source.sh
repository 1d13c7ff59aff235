#!/usr/bin/env bash
# Fetches the source of Lua, as Debian's source package, and applies the Runner's patches to it.
#
#   Tools/lua_source.sh [FOLDER]      a relative FOLDER starts at the project's root; build/lua unless given
#
# Only one version is taken, known by its checksum. A machine without a connection uses the archive
# that somebody has put into the folder. Safe to run again: a source that is complete is left alone.
source "$(dirname "$0")/steps.sh"
source Tools/debian_sources.sh

ARCHIVE=lua5.4_5.4.4.orig.tar.gz
CHECKSUM=164c7849653b80ae67bec4b7473b884bf5cc8d2dca05653475ec2ed27b9ebf61
PATCHES=Runner/Lua/Lua_Patches

folder=${1:-build/lua}
mkdir -p "$folder"
folder=$(cd "$folder" && pwd)

fetch() {
    step "Fetching the source of Lua"
    download_sources "$folder" lua5.4
    [ -f "$folder/$ARCHIVE" ] ||
        fail "cannot fetch the source of Lua, see $folder/download.log; or put $ARCHIVE into $folder"
}

# The stamp is written after this: a source that is half made is not taken for complete.
unpack() {
    local patch
    rm -rf "$folder/source" "$folder/complete" "$folder/unpacked"
    mkdir "$folder/unpacked"
    tar -xzf "$folder/$ARCHIVE" -C "$folder/unpacked" --strip-components=1
    for patch in "$PATCHES"/*.patch; do
        quietly "$folder/patch.log" patch -p1 -d "$folder/unpacked" -i "$PWD/$patch"
    done
    mv "$folder/unpacked" "$folder/source"
}

# CMake reads the stamp too, and so notices a source without the patches of today.
stamp=$(echo "$CHECKSUM  $ARCHIVE" && cd "$PATCHES" && sha256sum -- *.patch)
[ "$(cat "$folder/complete" 2>/dev/null)" = "$stamp" ] && exit 0
[ -f "$folder/$ARCHIVE" ] || fetch
found=$(sha256sum "$folder/$ARCHIVE" | cut -d ' ' -f 1)
[ "$found" = "$CHECKSUM" ] || fail "$folder/$ARCHIVE is not the source that the Runner is built from: delete it and" \
    "run Tools/lua_source.sh again (its SHA-256 is $found, not $CHECKSUM)"
unpack
echo "$stamp" >"$folder/complete"
