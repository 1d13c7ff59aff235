#!/bin/sh
# Docs/Handing_On.md names every library that the Runner is linked with: who hands a game on must know them.
#
#   handing_on.sh OBJDUMP RUNNER SOURCE_DIR
objdump=$1 runner=$2 page=$3/Docs/Handing_On.md
failures=0
count=0
# The page speaks of glibc as a whole; sanitizers are handed on to nobody.
for library in $("$objdump" -p "$runner" | awk '$1 == "NEEDED" { print $2 }' | grep -vE '^(libc|libm|libasan|libubsan|ld-linux.*)\.so'); do
    count=$((count + 1))
    grep -qF "\`$library\`" "$page" || {
        echo "Docs/Handing_On.md: the Runner needs $library, which the page does not name" >&2
        failures=$((failures + 1))
    }
done
[ "$count" -ge 3 ] || { echo "only $count libraries were found in $runner" >&2; exit 1; }
[ "$failures" -eq 0 ]
