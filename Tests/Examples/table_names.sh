#!/bin/sh
# The table of names in Docs/Your_Engine.md, held against the archive and the headers: it lists exactly the host names
# that the archive leaves undefined, each with the header that declares it and the step that needs it.
#
#   table_names.sh NM ARCHIVE SOURCE_DIR
nm=$1 archive=$2 source=$3
listed=$(mktemp) && undefined=$(mktemp) && declared=$(mktemp) || exit 2
trap 'rm -f "$listed" "$undefined" "$declared"' EXIT
failures=0

complain() {
    echo "Docs/Your_Engine.md: $1" >&2
    failures=$((failures + 1))
}

# Rows: | `NAME`, `NAME`... | `HEADER` | STEP | what a stub does |   as lines NAME HEADER STEP
awk -F'|' '/^## /{ inTable = $0 ~ /may stay stubs/ }
inTable && /^\| `/ {
    count = split($2, names, /`/); split($3, header, /`/); gsub(/ /, "", $4)
    for (i = 2; i <= count; i += 2) print names[i] "\t" header[2] "\t" $4
}' "$source/Docs/Your_Engine.md" | sort >"$listed"

# What any interface header declares, as words; comments are no declarations.
for header in $(cd "$source" && find Platform Files -name '*.h' ! -path 'Files/Graphics/*'); do
    sed 's,//.*,,' "$source/$header" | grep -oE '[A-Za-z_][A-Za-z_0-9]*' | sort -u | sed "s,\$,\t$header,"
done >"$declared"

# The names of the host: undefined everywhere in the archive, without parameters; names of the C library and of libpng
# are declared by no interface header, or are members there.
"$nm" -C "$archive" | awk '{ line = $0; sub(/^[0-9a-f ]*/, "", line); letter = substr(line, 1, 1); name = substr(line, 3)
    sub(/\(.*/, "", name); if (letter == "U") wanted[name] = 1; else defined[name] = 1 }
    END { for (name in wanted) if (!(name in defined)) print name }' | sort |
    grep -vxE '(malloc|calloc|realloc|free|fopen|fwrite|fclose)' |
    awk -v declared="$declared" '
        BEGIN { while ((getline line < declared) > 0) { split(line, part, "\t"); known[part[1]] = 1 } }
        { first = $0; sub(/[:<].*/, "", first); if (first in known) print }' >"$undefined"
[ "$(wc -l <"$undefined")" -ge 80 ] || complain "only $(wc -l <"$undefined") host names were found in $archive"

for name in $(cut -f 1 "$listed" | comm -23 "$undefined" -); do complain "lacks $name, which the module leaves undefined"; done
for name in $(cut -f 1 "$listed" | comm -13 "$undefined" -); do complain "lists $name, which the module does not ask for"; done
for name in $(cut -f 1 "$listed" | uniq -d); do complain "lists $name twice"; done

while IFS='	' read -r name header step; do
    grep -qx "$(printf '%s' "${name##*::}" | tr -d '~')	$header" "$declared" ||
        complain "says that $header declares $name"
    case $step in
    follow | built-ins | callbacks | saves | images) ;;
    *) complain "says that $name is needed from '$step', which is no step" ;;
    esac
done <"$listed"
[ "$failures" -eq 0 ]
