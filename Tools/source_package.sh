#!/usr/bin/env bash
# Fetches the original sources of Debian packages, each into FOLDER/<package>.
#
#   Tools/source_package.sh FOLDER PACKAGE...      FOLDER is taken from the project's root
#
# The machine's package lists stay as they are: apt-get works on a copy of its package sources, with deb-src, and on
# lists of its own. Safe to run again: a package that is there is left alone.
source "$(dirname "$0")/steps.sh"

[ $# -ge 2 ] || fail "usage: Tools/source_package.sh FOLDER PACKAGE..."
mkdir -p "$1"
folder=$(cd "$1" && pwd)
shift

private_apt() {
    apt-get -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$folder/apt/sources" \
        -o Dir::State::lists="$folder/apt/lists" -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache= \
        -o Debug::NoLocking=true -o APT::Sandbox::User=root -o Acquire::Languages=none "$@"
}

# Copies the machine's package sources, in both of their notations, as sources of source packages.
copy_package_sources() {
    local file
    mkdir -p "$folder/apt/sources" "$folder/apt/lists/partial"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
        [ -f "$file" ] || continue
        case "$file" in
        *.list) sed -nE 's/^[[:space:]]*deb[[:space:]]/deb-src /p' "$file" >"$folder/apt/sources/$(basename "$file")" ;;
        *.sources) sed -E 's/^Types:.*/Types: deb-src/' "$file" >"$folder/apt/sources/$(basename "$file")" ;;
        esac
    done
    # One package source that cannot be read is no reason to stop: what cannot be had at all fails at the download.
    private_apt update >"$folder/update.log" 2>&1 || true
}

# A package that is half unpacked has another name.
fetch() {
    local package=$1 work=$folder/apt/$1
    mkdir -p "$work/unpacked"
    (cd "$work" && quietly "$folder/$package.log" private_apt source --download-only --tar-only "$package")
    tar -xf "$work"/*.orig.tar.* -C "$work/unpacked" --strip-components=1
    mv "$work/unpacked" "$folder/$package"
}

missing=()
for package in "$@"; do
    [ -d "$folder/$package" ] || missing+=("$package")
done
[ ${#missing[@]} = 0 ] && exit 0
step "Fetching the sources of ${missing[*]}"
rm -rf "$folder/apt"
copy_package_sources
for package in "${missing[@]}"; do
    fetch "$package"
done
rm -rf "$folder/apt"
