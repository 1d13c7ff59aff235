# The step of ./check --all that plays the corpora of all fuzz targets and fuzzes each for some seconds. Sourced after
# Tools/checks.sh, not run.
source Tools/fuzzing.sh

FUZZ_SECONDS=5 # of each target

fuzz_briefly() {
    local target=$1 log=build/fuzz/$1.log
    play_inputs "$target" "Fuzz/Corpus/$target" >"$log" 2>&1 &&
        (fuzz_target "$target" "$FUZZ_SECONDS") >>"$log" 2>&1 && return
    tail -n 40 "$log" >&2
    fail "$target has failed; its whole output is in $log"
}

check_fuzz() {
    need $FUZZ_PACKAGES
    build_fuzz_target
    step "Playing the corpora of the fuzz targets, and fuzzing each for $FUZZ_SECONDS seconds"
    local target running=() failed=
    for target in $FUZZ_TARGETS; do
        fuzz_briefly "$target" &
        running+=($!)
        [ ${#running[@]} -lt "$(nproc)" ] && continue
        wait "${running[0]}" || failed=1
        running=("${running[@]:1}")
    done
    for target in "${running[@]}"; do
        wait "$target" || failed=1
    done
    [ -z "$failed" ] || fail "a fuzz target has failed, see the lines above"
    grep -h 'stat::number_of_executed_units' build/fuzz/*.log |
        awk '{ n += $2 } END { printf "%d inputs without a report\n", n }'
    passed=$((passed + $(wc -w <<<"$FUZZ_TARGETS")))
}
