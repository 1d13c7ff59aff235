#!/usr/bin/env bash
# Measures how long a map of 1,000 x 1,000 tiles with six layers takes to load, in each format and encoding: the processor
# time and the time of the clock of a whole run of one frame, the least of several, less those of a game without a map.
#
#   Tools/map_load_times.sh [RUNNER]      builds the optimised Runner unless one is given
source "$(dirname "$0")/steps.sh"

RUNS=5
WORK=build/large_map
need python3 zstd

runner=${1:-}
if [ -z "$runner" ]; then
    build release runner
    runner=build/release/Runner/runner
fi
[ -e $WORK/zstd_tmj.lua ] || quietly build/large_map.log python3 Tools/make_large_map.py $WORK
echo "room_add{}" >$WORK/nothing.lua

# Prints the least processor time and the least time of the clock of a game, in milliseconds.
least_times() {
    local TIMEFORMAT='%U %S %R' run
    for ((run = 0; run < RUNS; run++)); do
        { time "$runner" "$WORK/$1.lua" --frames 1 --no-draw --quiet --out $WORK/out >/dev/null 2>$WORK/run.log; } 2>&1 ||
            fail "$1 does not run: $(cat $WORK/run.log)"
    done | awk '{ p = 1000 * ($1 + $2); c = 1000 * $3; if (NR == 1 || p < P) P = p; if (NR == 1 || c < C) C = c }
        END { print P, C }'
}

read -r none_processor none_clock < <(least_times nothing)
printf '%-14s %14s %14s\n' map "processor, ms" "clock, ms"
for game in {csv,base64,zlib,gzip,zstd}_{tmx,tmj}; do
    read -r processor clock < <(least_times "$game")
    awk -v g="$game" -v p="$processor" -v c="$clock" -v np="$none_processor" -v nc="$none_clock" \
        'BEGIN { printf "%-14s %14.0f %14.0f\n", g, p - np, c - nc }'
done
