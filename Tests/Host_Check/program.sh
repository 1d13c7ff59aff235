#!/bin/sh
# What the host check's program prints and how it ends, on the recording host, which keeps the promises up to built-ins
# and breaks some of callbacks.
#
#   program.sh PROGRAM
program=$1
failures=0

# ends STATUS ARGUMENT...: runs the program; what it says is in $said.
ends() {
    wanted=$1
    shift
    said=$("$program" "$@" 2>&1)
    status=$?
    [ "$status" -eq "$wanted" ] || { echo "$*: status $status, not $wanted: $said" >&2; failures=1; }
}
says() {
    printf '%s\n' "$said" | grep -qxF -e "$1" || { echo "no line '$1' in: $said" >&2; failures=1; }
}

ends 0 --level built-ins
ends 1 --level callbacks --only mark.twice
says 'BROKEN      mark.twice (level callbacks)'
says '  Files/Object/Object_Base.h promises: False: already marked, or outside.'
says '  seen: Mark4GC of a marked object answers true'
says 'level callbacks: 0 promises hold, 1 broken, 0 not tested'

ends 1 --tap --only mark.twice
says '1..1'
says 'not ok 1 - mark.twice'
says '  header: "Files/Object/Object_Base.h"'
says '  promise: "False: already marked, or outside."'
says '  seen: "Mark4GC of a marked object answers true"'

ends 0 --tap --only collector.frees # nothing was tested, and that is said
says 'ok 1 - collector.frees # SKIP the hook collect is null'

# The reference's bits are told, and count when they are asked for.
ends 0 --tap --only matrix.same_bits
says 'not ok 1 - matrix.same_bits # TODO counted with --same-bits'
ends 1 --only matrix.same_bits --same-bits

ends 2 --level nowhere
says 'host_check: there is no level nowhere; levels are follow, built-ins, callbacks, saves, images'
ends 2 --level
says 'host_check: --level needs a name behind it'
ends 2 --only no.such_check
ends 2 --only mark.twice --level follow
ends 2 --fast
says 'host_check: unknown argument --fast; --help names all'
ends 0 --help
ends 0 --list
exit "$failures"
