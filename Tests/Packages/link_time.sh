#!/usr/bin/env bash
# The module, without run-time type information, and a host with it are one program for link-time optimisation: no
# complaint about two definitions of one type, and the results are the golden ones.
#
#   link_time.sh MODULE WORK COMPILER
source "$(dirname "$0")/common.sh"
module=$1 work=$2/$3 compiler=$3
rm -rf "$work"
mkdir -p "$work"
cd "$work" || exit

flags=(-std=c++17 -O1 -flto -I"$module")
link=(-fuse-ld=lld)
if [ "$compiler" = g++ ]; then
    flags+=(-fno-fat-lto-objects)
    link=(-Wodr -Wlto-type-mismatch -Werror)
fi
compile() { # FOLDER FLAG... -- SOURCE...
    local folder=$1 own=()
    shift
    while [ "$1" != -- ]; do own+=("$1") && shift; done
    shift
    mkdir "$folder"
    must "compiling" bash -o pipefail -c 'cd "$0" && printf "%s\n" "$1" | xargs -P 2 -n 4 $2 -c' "$folder" \
        "$(printf '%s\n' "$@")" "$compiler ${flags[*]} ${own[*]}"
}
compile module -fno-exceptions -fno-rtti -- "$module"/Files/Graphics/*.cpp
compile host -frtti -- "$module"/Tests/Support/Recording_Host*.cpp
compile programs -frtti -- "$module"/Tests/Bits/Result_Hash.cpp "$module"/Tests/Packages/Run_Time_Types.cpp
for program in Result_Hash Run_Time_Types; do
    must "linking $program" "$compiler" "${flags[@]}" "${link[@]}" programs/$program.o host/*.o module/*.o -lpng -o $program
    [ -z "$said" ] || fail "the linker complains: $said"
done
must "results" ./Result_Hash "$module/Tests/Bits/golden.txt"
must "run-time types" ./Run_Time_Types
