#!/usr/bin/env bash
# Plays the example games on x86-64 and, under its emulator or in Node, on another target, and compares them byte for
# byte: the whole trace, a save, how each goes on from the save that the other wrote, and a recording of keys, mouse and
# a gamepad that x86-64 makes and the other replays.
#
#   Tools/compare_runners.sh PRESET      armhf or arm64, whose libraries Tools/sysroot.sh has fetched, or web, whose
#                                        sources Tools/web_sources.sh has fetched
#
# Builds the Runner where that is missing, and prints "same/compared" games.
source "$(dirname "$0")/steps.sh"

preset=${1:-}
case "$preset" in
armhf | arm64)
    OTHER_RUNNER=("build/$preset/Tests/emulated_runner")
    target=runner
    ;;
web)
    OTHER_RUNNER=(node build/web/runner/command.mjs)
    target=web_runner
    ;;
*) fail "usage: Tools/compare_runners.sh armhf|arm64|web" ;;
esac
GAMES="canyon shake orbit split kit town"
FRAMES=600
SAVED_AT=500
RECORDED=120
GOLDEN_LINES=100 # of a golden trace; its last line is a hash of the rest
WORK=build/compare-$preset
HOME_RUNNER=build/optimised/Runner/runner

# play RUNNER NAME OPTION...: leaves NAME.trace. RUNNER: home or other
play() {
    local runner=("$HOME_RUNNER") name=$2
    [ "$1" = home ] || runner=("${OTHER_RUNNER[@]}")
    shift 2
    quietly "$WORK/$name.log" "${runner[@]}" "Games/$game/$game.lua" --quiet --no-draw --out "$WORK/$name-out" \
        --trace "$WORK/$name.trace" "$@"
}

# The first trace is the end of the second.
is_end_of() { tail -c "$(stat -c %s "$WORK/$1.trace")" "$WORK/$2.trace" | cmp - "$WORK/$1.trace"; }

is_golden() {
    head -n $GOLDEN_LINES "$WORK/$1.trace" | cmp - <(head -n $GOLDEN_LINES "Tests/Golden/${game}_trace.txt")
}

# The other replays what was recorded here, and plays another way than without input. Right Ctrl and Start join where
# players must join before they steer.
same_replay() {
    play home "$game-recorded" --frames $RECORDED --input "$WORK/input.txt" --record "$WORK/$game.rec"
    play other "$game-replayed" --replay "$WORK/$game.rec"
    cmp "$WORK/$game-recorded.trace" "$WORK/$game-replayed.trace" &&
        ! cmp -s -n "$(stat -c %s "$WORK/$game-recorded.trace")" "$WORK/$game-recorded.trace" "$WORK/$game-home.trace"
}

# What was played after a load must be something: nothing is the end of every trace.
same_game() {
    play home "$game-home" --frames $FRAMES --save-at $SAVED_AT "$WORK/$game-home.sav"
    play other "$game-other" --frames $FRAMES --save-at $SAVED_AT "$WORK/$game-other.sav"
    play home "$game-home-goes-on" --frames $((FRAMES - SAVED_AT)) --load "$WORK/$game-other.sav"
    play other "$game-other-goes-on" --frames $((FRAMES - SAVED_AT)) --load "$WORK/$game-home.sav"
    is_golden "$game-home" && cmp "$WORK/$game-home.trace" "$WORK/$game-other.trace" &&
        cmp "$WORK/$game-home.sav" "$WORK/$game-other.sav" &&
        [ -s "$WORK/$game-home-goes-on.trace" ] && [ -s "$WORK/$game-other-goes-on.trace" ] &&
        is_end_of "$game-home-goes-on" "$game-home" && is_end_of "$game-other-goes-on" "$game-home" && same_replay
}

build optimised runner >&2
build "$preset" "$target" >&2
rm -rf "$WORK"
mkdir -p "$WORK"
cat >"$WORK/input.txt" <<'EOF'
2  key right_ctrl tap
5  key right down
20 key space tap
30 mouse 300 200
31 button left down
60 button left up
61 wheel 0 1
70 pad 0 on
71 pad 0 axis left_x 0.75
75 pad 0 button start tap
90 pad 0 button a tap
EOF
running=()
for game in $GAMES; do
    same_game >&2 &
    running+=($!)
done
same=0
for pid in "${running[@]}"; do
    if wait "$pid"; then
        same=$((same + 1))
    fi
done
echo "$same/${#running[@]}"
[ "$same" = ${#running[@]} ]
