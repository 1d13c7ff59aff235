# Shell functions for the tests of the packages. Sourced by bash scripts, not run.
#
# must TEXT COMMAND...     runs a command; when it fails, prints the text and the command's output, and ends the test
# fail TEXT                prints the text and ends the test
# expect_says TEXT         the last command of must said this
# depends_of DEB           the names of the packages that a Debian package depends on
# unpack WORK/root DEB...  unpacks packages into a new folder
set -uo pipefail

fail() {
    printf '%s\n' "$*" >&2
    exit 1
}

must() {
    local text=$1
    shift
    said=$("$@" 2>&1) || fail "$text: '$*' failed:
$said"
}

expect_says() {
    case "$said" in
    *"$1"*) ;;
    *) fail "expected '$1' in: $said" ;;
    esac
}

depends_of() { dpkg-deb -f "$1" Depends | tr ',' '\n' | sed 's/^ *//; s/ .*//'; }

unpack() {
    local root=$1 package
    shift
    rm -rf "$root"
    mkdir -p "$root"
    for package in "$@"; do
        must "unpacking" dpkg-deb -x "$package" "$root"
    done
}
