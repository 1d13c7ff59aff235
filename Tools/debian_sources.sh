# Downloads of Debian's source packages. Sourced after Tools/steps.sh, not run.
#
# download_sources FOLDER PACKAGE...   leaves the original archives in FOLDER, as PACKAGE_VERSION.orig.tar.*, and what was
#                                      said in FOLDER/download.log. What cannot be had is missing afterwards.
#
# The machine's package lists stay as they are: apt-get works on a copy of its package sources, with deb-src, and on
# lists of its own.

# Copies the machine's package sources, in both of their notations, as sources of source packages.
copy_package_sources() {
    local file
    mkdir -p "$1"
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
        [ -f "$file" ] || continue
        case "$file" in
        *.list) sed -nE 's/^[[:space:]]*deb[[:space:]]/deb-src /p' "$file" >"$1/$(basename "$file")" ;;
        *.sources) sed -E 's/^Types:.*/Types: deb-src/' "$file" >"$1/$(basename "$file")" ;;
        esac
    done
}

source_apt() {
    local apt=$1
    shift
    apt-get -o Dir::Etc::sourcelist=/dev/null -o Dir::Etc::sourceparts="$apt/sources" -o Dir::State::lists="$apt/lists" \
        -o Dir::Cache::pkgcache= -o Dir::Cache::srcpkgcache= \
        -o Debug::NoLocking=true -o APT::Sandbox::User=root -o Acquire::Languages=none "$@"
}

download_sources() {
    local folder=$1 package
    shift
    mkdir -p "$folder/apt/lists/partial"
    copy_package_sources "$folder/apt/sources"
    # One package source that cannot be read is no reason to stop.
    source_apt "$folder/apt" update >"$folder/download.log" 2>&1 || true
    for package in "$@"; do
        (cd "$folder" && source_apt "$folder/apt" source --download-only --tar-only "$package") \
            >>"$folder/download.log" 2>&1 || true
    done
    rm -rf "$folder/apt"
}
