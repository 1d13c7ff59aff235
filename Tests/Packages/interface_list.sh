#!/bin/sh
# The interface of the module as a list: the installed headers, the names that the archive defines for hosts, and those
# that it wants from them. A host can notice every difference from interface.txt.
#
#   interface_list.sh NM ARCHIVE HEADERS            compares; HEADERS: the installed headers' names, as one word
#   interface_list.sh NM ARCHIVE HEADERS --write    writes the list anew (the target write_interface_list)
#
# Left out: private members, the module's own namespace but for the version, what compilers may inline, and other
# libraries' names.
export LC_ALL=C
list=$(dirname "$0")/interface.txt
private=$(awk '/^private:/ { inside = 1 } /^};/ { inside = 0 } inside' "$(dirname "$0")"/../../Files/Graphics/*.h |
    sed -nE '/friend/d; s/^[^/(]*[ *]([A-Za-z_]+)(\(.*|;.*)$/\1/p' | sort -u | paste -sd '|')
made=$(mktemp) && names=$(mktemp) || exit 2
trap 'rm -f "$made" "$names"' EXIT

# symbols LETTERS PREFIX OPTION: demangled names of these letters, without the standard library's, C's and libpng's.
symbols()
{
    "$nm" -p "$3" "$archive" 2>/dev/null | sed -nE "s/^[0-9a-f ]* ($1) //p" |
        grep -vE '^(_ZN?K?St|_ZN?K?9__gnu|_Z(n|d)[wal]|_ZT|__|_GLOBAL|_?(set|long)jmp|png_|mem|str|f?printf|free$|malloc$|stderr|_Exit|sqrtf|floorf|lrintf)' |
        c++filt | grep -vE "^CameraModule::[^V]|::($private)(\(|\$)" | sort -u | sed "s/^/$2 /"
}

nm=$1
archive=$2
printf '%s\n' "$3" | tr ' ' '\n' | sort | sed 's/^/header /' >"$made"
symbols '[TBDR]' defines --defined-only >>"$made"
symbols '[V]' defines --defined-only >>"$made"
symbols '[W]' defines --defined-only | grep -E ' CCameraManager::(SetInitialLoadHighPoint|GetScriptInstance)' >>"$made"
symbols '[U]' needs --undefined-only >"$names"
sed 's/^[a-z]* //' "$made" | sort >"$names.defined"
sed 's/^needs //' "$names" | sort | comm -23 - "$names.defined" | sed 's/^/needs /' >>"$made"
rm -f "$names.defined"

if [ "$4" = --write ]; then
    cp "$made" "$list"
    exit
fi
diff -u "$list" "$made" && exit 0
echo "The interface has changed, see above. A line that is gone (-) or a new 'needs' breaks hosts: the major version goes
up, and CHANGELOG.md says what to change. Another new line is an addition: the minor version goes up. Then build the
target write_interface_list." >&2
exit 1
