#!/bin/sh
# The recording host, linked with the installed host check by hand: with one compiler and its flags.
#
#   installed.sh SOURCE BUILD WORK COMPILER [FLAG...]
#
# SOURCE: the project, of which the host alone is taken. BUILD: the module's build tree. WORK: a folder of the test's own.
set -eu
source=$1 build=$2 work=$3 compiler=$4
shift 4

fail() {
    echo "$compiler $*" >&2
    exit 1
}

rm -rf "$work"
mkdir -p "$work/host/Tests"
cmake --install "$build" --prefix "$work/installed" >"$work/log"
cp -r "$source/Tests/Support" "$work/host/Tests"
cp "$source/Tests/Host_Check/Recording_Hooks.cpp" "$work/host"
archives=$(find "$work/installed" -name 'libcamera_host_check.a')
archives="$archives $(find "$work/installed" -name 'libcamera*.a' ! -name 'libcamera_host_check.a')"

cd "$work/host"
for file in Recording_Hooks.cpp Tests/Support/Recording_Host*.cpp; do
    "$compiler" -std=c++17 -O0 -Wall -Wextra -Werror -ffp-contract=off "$@" -I. \
        -I"$work/installed/include/camera_module" -I"$work/installed/include/camera_host_check" -c "$file"
done
# shellcheck disable=SC2086 # archives is a list
"$compiler" "$@" ./*.o $archives -lpng -o check || fail "$@: it does not link"

./check --level built-ins --tap >"$work/output" || fail "$@: status $?: $(grep -A4 '^not ok' "$work/output")"
planned=$(sed -n 's/^1\.\.//p' "$work/output")
[ "$planned" -gt 80 ] || fail "$@: only $planned checks"
[ "$(grep -cE '^(not )?ok ' "$work/output")" -eq "$planned" ] || fail "$@: not as many results as the plan says"
status=0
./check --level nowhere >"$work/output" 2>&1 || status=$?
[ "$status" -eq 2 ] || fail "$@: a level that does not exist ends with status $status"
