#!/usr/bin/env bash
# Fetches the original sources of Debian packages, each into FOLDER/<package>. An archive must be one of
# Tools/source_checksums.txt.
#
#   Tools/source_package.sh FOLDER PACKAGE...      FOLDER is taken from the project's root
#
# Safe to run again: a package that is there is left alone.
source "$(dirname "$0")/steps.sh"
source Tools/debian_sources.sh

[ $# -ge 2 ] || fail "usage: Tools/source_package.sh FOLDER PACKAGE..."
mkdir -p "$1"
folder=$(cd "$1" && pwd)
shift

CHECKSUMS=Tools/source_checksums.txt

is_known() { grep -Fqx "$(sha256sum "$1" | cut -d ' ' -f 1)  $(basename "$1")" $CHECKSUMS; }

# A package that is half unpacked has another name.
unpack() {
    local package=$1 unpacked=$folder/$1.part archive
    for archive in "$folder"/archives/"$package"_*.orig.tar.*; do
        [ ! -f "$archive" ] || is_known "$archive" ||
            fail "$(basename "$archive") is not the source that is known: its SHA-256 is not in $CHECKSUMS"
    done
    rm -rf "$unpacked"
    mkdir "$unpacked"
    tar -xf "$folder"/archives/"$package"_*.orig.tar.* -C "$unpacked" --strip-components=1 ||
        fail "cannot fetch the source of $package, see $folder/archives/download.log"
    mv "$unpacked" "$folder/$package"
}

missing=()
for package in "$@"; do
    [ -d "$folder/$package" ] || missing+=("$package")
done
[ ${#missing[@]} = 0 ] && exit 0
step "Fetching the sources of ${missing[*]}"
rm -rf "$folder/archives"
download_sources "$folder/archives" "${missing[@]}"
for package in "${missing[@]}"; do
    unpack "$package"
done
