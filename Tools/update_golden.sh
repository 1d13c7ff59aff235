#!/usr/bin/env bash
# Replaces one kept result by what a build of today makes, and prints what changed. Nothing is committed: look at it first.
# Docs/Keeping.md says which of them a new system may change, and which never.
#
#   Tools/update_golden.sh NAME [BUILD]
#
#   traces       what each view of the example games shows, Tests/Golden/*_trace.txt
#   saves        what their saved games come to, Tests/Golden/*_save.txt
#   pictures     what they draw, Tests/Golden/*.png, and the driver that drew it
#   bits         the hashes of results that are the same everywhere, Tests/Bits/golden.txt
#   documents    pages that are made from the code: Docs/Built_Ins.md, Docs/api.lua, Docs/Save_State.md
#   interface    what hosts can see, Tests/Packages/interface.txt
#
# BUILD is a build folder of any preset for this machine; build/dev unless given. What is needed of it is built.
source "$(dirname "$0")/steps.sh"

NAMES="traces saves pictures bits documents interface"
name=${1:-}
[[ -n $name && " $NAMES " == *" $name "* ]] || fail "name what to renew, one of: $NAMES"
folder=${2:-build/dev}

# TARGET...
make_targets() {
    [ -f "$folder/build.ninja" ] || build dev "$@"
    quietly "$folder/golden-build.log" cmake --build "$folder" --target "$@"
}

# The tests write the files before they compare them. FILTER
run_tests() {
    make_targets runner_tests
    GOLDEN_UPDATE=1 quietly build/golden.log "$folder/Tests/runner_tests" --gtest_filter="$1"
    grep -q '\[  PASSED  \] 0 tests' build/golden.log && fail "this build has no such tests: is drawing switched off?"
    return 0
}

# A program that fails leaves the file as it was. FILE PROGRAM [ARGUMENT...]
keep_output() {
    local file=$1
    shift
    "$@" >build/golden.new || fail "'$*' failed; $file is as before"
    mv build/golden.new "$file"
}

step "Renewing: $name"
mkdir -p build
case $name in
traces)
    files="Tests/Golden/*_trace.txt"
    run_tests '*GoldenTrace.IsTheSameBitForBit*'
    ;;
saves)
    files="Tests/Golden/*_save.txt"
    run_tests '*GoldenTrace.ASaveHoldsTheSameBytes*'
    ;;
pictures)
    files="Tests/Golden/*.png Tests/Golden/driver.txt"
    run_tests '*GoldenPicture*'
    ;;
bits)
    files=Tests/Bits/golden.txt
    make_targets result_hash
    keep_output $files "$folder/Tests/Bits/result_hash"
    ;;
documents)
    files="Docs/Built_Ins.md Docs/api.lua Docs/Save_State.md"
    make_targets write_script_documents save_state_table
    keep_output Docs/Save_State.md "$folder/Tools/save_state_table"
    ;;
interface)
    files=Tests/Packages/interface.txt
    make_targets write_interface_list
    ;;
esac

# shellcheck disable=SC2086 # the names are patterns
changed=$(git diff --name-only -- $files)
if [ -z "$changed" ]; then
    echo "Nothing changed."
    exit 0
fi
step "Changed"
git --no-pager diff --stat -- $changed
git --no-pager diff -U0 -- $changed | grep -E '^[-+]' | cut -c1-160 | head -n 40
