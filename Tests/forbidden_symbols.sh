#!/bin/sh
# What C libraries compute differently, and what differs between two runs, is used nowhere in the Runner, its Lua and the
# module.
#
#   forbidden_symbols.sh NM FILE...      archives and object files
nm=$1
shift
forbidden=
for name in sin cos tan asin acos atan atan2 sinh cosh tanh exp exp2 expm1 log log2 log10 log1p pow hypot cbrt sincos; do
    forbidden="$forbidden $name ${name}f ${name}l __${name}_finite __${name}f_finite"
done
forbidden="$forbidden strcoll setlocale localeconv time clock gettimeofday rand srand random"

listing=$("$nm" -u "$@") || exit 2
printf '%s\n' "$listing" | grep -q ' U malloc\| U memcpy' || {
    echo "no names were read from the files" >&2
    exit 2
}
found=$(for name in $forbidden; do printf '%s\n' "$listing" | grep -oE " U $name(@.*)?\$"; done | sort -u)
[ -z "$found" ] && exit 0
echo "these must not be used:" $found >&2
exit 1
