#!/usr/bin/env bash
# Plays games for many frames and judges whether their memory stays flat: what is resident at the end lies within 2 % of
# what was after the first thousandth of the frames, or after the first 5,000. Two games are played at a time.
#
#   Tools/endurance.sh GAME FRAMES [--draw] [--size WIDTHxHEIGHT]
#
# GAME: a file, or "all" for the example games, each with so many frames.
source "$(dirname "$0")/steps.sh"

[ $# -ge 2 ] || fail "usage: Tools/endurance.sh GAME|all FRAMES [--draw] [--size WIDTHxHEIGHT]"
games=$1
[ "$games" != all ] || games=$(ls Games/*/ -d | sed 's|Games/\(.*\)/|Games/\1/\1.lua|')
build optimised endurance
mkdir -p build/endurance
play() { build/optimised/Tools/endurance "$@" --out "build/endurance/$(basename "$1" .lua)"; }
export -f play
printf '%s\n' $games | xargs -P "$(nproc)" -I GAME bash -c 'play "$@"' play GAME "${@:2}"
