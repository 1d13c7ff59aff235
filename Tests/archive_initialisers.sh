#!/bin/sh
# The module constructs one object before main, the camera manager; everything else is constant when it starts.
#
#   archive_initialisers.sh OBJDUMP ARCHIVE
#
# Not for builds with AddressSanitizer, which adds an initialiser of its own to every object.
listing=$("$1" -h "$2") || exit 2
found=$(printf '%s\n' "$listing" | awk '
    / file format / { member = $1; sub(/:$/, "", member) }
    $2 ~ /^\.(init_array|fini_array|preinit_array|ctors|dtors)/ { print member, $2, $3 }')

# One entry of one pointer, in the object of g_CM.
case "$found" in
*"
"* | "") ;;
"Camera_Manager.cpp."*" .init_array 00000004" | "Camera_Manager.cpp."*" .init_array 00000008") exit 0 ;;
esac
echo "$2: expected one initialiser, that of g_CM in Camera_Manager.cpp; found: $found" >&2
exit 1
