#!/usr/bin/env bash
# Fetches the sources of Debian packages, patched as Debian builds them, each into FOLDER/<package>.
#
#   Tools/source_package.sh FOLDER PACKAGE...      FOLDER is taken from the project's root
#
# The machine's own package sources are taken, with the sources of what they offer; the machine stays as it is: apt-get
# works on lists of its own inside the folder. Safe to run again: a package that is there is left alone.
source "$(dirname "$0")/steps.sh"

[ $# -ge 2 ] || fail "usage: Tools/source_package.sh FOLDER PACKAGE..."
mkdir -p "$1"
folder=$(cd "$1" && pwd)
shift

private_apt() {
    apt-get -o Dir::Etc::sourcelist=/nonexistent -o Dir::Etc::sourceparts="$folder/apt/sources" \
        -o Dir::State::lists="$folder/apt/lists" -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache= \
        -o Debug::NoLocking=true -o APT::Sandbox::User=root -o Acquire::Languages=none "$@"
}

# A copy of the machine's package sources that names their source packages instead.
list_sources() {
    local file
    mkdir -p "$folder/apt/sources" "$folder/apt/lists/partial"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -f "$file" ] && sed -n 's/^deb /deb-src /p' "$file" >"$folder/apt/sources/$(basename "$file" .list).list"
    done
    for file in /etc/apt/sources.list.d/*.sources; do
        [ -f "$file" ] && sed 's/^Types:.*/Types: deb-src/' "$file" >"$folder/apt/sources/$(basename "$file")"
    done
    # One list that a mirror does not have is no reason to stop: what cannot be had at all fails at the download.
    private_apt update >"$folder/update.log" 2>&1 || echo "some package lists are missing: see $folder/update.log"
}

# The newest, else the release's own: mirrors do not always have the sources of later updates.
newest_source() {
    private_apt source "$1" || private_apt source "$1/$(. /etc/os-release && echo "$VERSION_CODENAME")"
}

fetch() {
    local package=$1 unpacking=$folder/unpacking
    rm -rf "$unpacking"
    mkdir -p "$unpacking"
    (cd "$unpacking" && quietly "$folder/$package.log" newest_source "$package")
    mv "$unpacking"/*/ "$folder/$package"
    rm -rf "$unpacking"
}

missing=()
for package in "$@"; do
    [ -d "$folder/$package" ] || missing+=("$package")
done
[ ${#missing[@]} = 0 ] && exit 0
need dpkg-dev
step "Fetching the sources of ${missing[*]}"
list_sources
for package in "${missing[@]}"; do
    fetch "$package"
done
rm -rf "$folder/apt"
