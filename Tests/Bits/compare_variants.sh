#!/bin/sh
# Builds result_hash with each compiler at several levels of optimisation and compares what it prints with golden.txt.
#
#   compare_variants.sh SOURCE WORK COMPILER...
#
# The flags leave the compilers their own choice about fused operations, and allow such instructions where the
# processor has them: the sources themselves must keep the arithmetic exact.
source=$1
work=$2
shift 2

levels='-O0
-O2
-O3'
if grep -qw fma /proc/cpuinfo; then
    levels="$levels
-O3 -mfma -mavx2"
fi

# build COMPILER FLAGS FOLDER: all sources, as many at a time as there are processors.
build()
{
    mkdir -p "$3"
    printf '%s\n' "$source"/Files/Graphics/*.cpp "$source"/Tests/Support/Recording_Host*.cpp \
        "$source"/Tests/Bits/Result_Hash.cpp |
        xargs -P "$(nproc)" -I{} sh -c '$1 -std=c++17 $2 -I"$3" -c "$5" -o "$4/$(basename "$5").o"' \
            build "$1" "$2" "$source" "$3" {} &&
        $1 "$3"/*.o -lpng -o "$3/result_hash"
}

failures=0
for compiler in "$@"; do
    oldIfs=$IFS
    IFS='
'
    for flags in $levels; do
        IFS=$oldIfs
        folder=$work/$(printf '%s' "$(basename "$compiler") $flags" | tr -c 'A-Za-z0-9+' _)
        if build "$compiler" "$flags" "$folder" && "$folder/result_hash" "$source/Tests/Bits/golden.txt"; then
            echo "$compiler $flags: the same"
        else
            echo "$compiler $flags: NOT the same" >&2
            failures=$((failures + 1))
        fi
    done
done
[ "$failures" -eq 0 ]
