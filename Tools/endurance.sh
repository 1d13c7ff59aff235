#!/usr/bin/env bash
# Plays games for many frames and judges whether their memory stays flat: what is resident at the end lies within 2 % of
# what was after the first thousandth of the frames.
#
#   Tools/endurance.sh GAME FRAMES [--draw]     GAME: a file, or "all" for the example games, each with so many frames
source "$(dirname "$0")/steps.sh"

[ $# -ge 2 ] || fail "usage: Tools/endurance.sh GAME|all FRAMES [--draw]"
games=$1
[ "$games" != all ] || games=$(ls Games/*/ -d | sed 's|Games/\(.*\)/|Games/\1/\1.lua|')
build optimised endurance
mkdir -p build/endurance
status=0
for game in $games; do
    build/optimised/Tools/endurance "$game" "$2" ${3:+"$3"} --out build/endurance || status=1
done
exit $status
