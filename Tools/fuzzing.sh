# Shell functions of ./fuzz and ./check --all. Sourced after Tools/steps.sh, not run.
#
# build_fuzz_target [TARGET]       builds one target, or all
# fuzz_target TARGET SECONDS       fuzzes; fails with the line that plays the input again
# play_inputs TARGET FILE...       plays files, or all files of folders

FUZZ_PACKAGES="clang lld libclang-rt-dev python3"
FUZZ_BUILD=build/fuzz
FUZZ_TARGETS="camera_stream built_ins fast_paths saved_game older_save recording map lua_program picture command_line text_files"

# How long inputs may be, in bytes: long ones are slow and find little that short ones do not.
declare -A FUZZ_LENGTH=([camera_stream]=2048 [built_ins]=512 [fast_paths]=512 [saved_game]=8192 [older_save]=8192
    [recording]=8192 [map]=8192 [lua_program]=512 [picture]=4096 [command_line]=512 [text_files]=2048)

export ASAN_OPTIONS="${ASAN_OPTIONS:-allocator_may_return_null=1:detect_stack_use_after_return=0}"
export UBSAN_OPTIONS="${UBSAN_OPTIONS:-print_stacktrace=1}"

name_fuzz_targets() {
    local target
    for target in $FUZZ_TARGETS; do
        printf '%-14s %s\n' "$target" "$(grep -oP "^\| \`$target\` \| \K[^|]*(?= \|)" Fuzz/README.md)"
    done
}

is_fuzz_target() { [[ " $FUZZ_TARGETS " == *" $1 "* ]]; }

build_fuzz_target() {
    [ $# = 0 ] || is_fuzz_target "$1" || fail "there is no target '$1'; there are: $FUZZ_TARGETS"
    build fuzz "${1:+fuzz_$1}"
}

play_inputs() {
    local target=$1
    shift
    local inputs=() input
    for input in "$@"; do
        if [ -d "$input" ]; then
            mapfile -t -O "${#inputs[@]}" inputs < <(find "$input" -type f | sort)
        else
            inputs+=("$input")
        fi
    done
    "$FUZZ_BUILD/Fuzz/$target" "${inputs[@]}"
}

# Leaks are looked for at the end: the targets count blocks themselves, and a search after each input would take most of
# the time. New inputs are kept in build/fuzz/corpus, those that break something in build/fuzz/found, slow ones in build/fuzz/slow.
fuzz_target() {
    local target=$1 seconds=$2 work=$FUZZ_BUILD/corpus/$1 dictionary=Fuzz/Dictionaries/$1.txt options=()
    [[ $seconds =~ ^[0-9]+$ ]] || fail "'$seconds' is neither a file nor a number of seconds"
    mkdir -p "$work" "$FUZZ_BUILD/found" "$FUZZ_BUILD/slow" "Fuzz/Corpus/$target"
    [ ! -e "$dictionary" ] || options+=("-dict=$dictionary")
    step "Fuzzing $target for $seconds seconds"
    FUZZ_SLOW=$FUZZ_BUILD/slow "$FUZZ_BUILD/Fuzz/$target" "$work" "Fuzz/Corpus/$target" "${options[@]}" \
        "-max_total_time=$seconds" "-max_len=${FUZZ_LENGTH[$target]}" "-artifact_prefix=$FUZZ_BUILD/found/$target-" \
        -timeout=20 -detect_leaks=0 -rss_limit_mb=3000 -malloc_limit_mb=2000 -print_final_stats=1 && return
    local found
    found=$(ls -t "$FUZZ_BUILD/found/$target-"* | head -n 1)
    fail "an input breaks something; to play it again: ./fuzz $target $found"
}

minimise_input() {
    local smaller=$FUZZ_BUILD/found/$1-smaller
    "$FUZZ_BUILD/Fuzz/$1" -minimize_crash=1 -max_total_time=60 "-exact_artifact_path=$smaller" "$2" || true
    [ -e "$smaller" ] || fail "nothing smaller breaks anything"
    echo "./fuzz $1 $smaller"
}

# Only what reaches more than the corpus: the repository stays small.
keep_inputs() {
    mkdir -p "$FUZZ_BUILD/corpus/$1" "Fuzz/Corpus/$1"
    "$FUZZ_BUILD/Fuzz/$1" -merge=1 "-max_len=${FUZZ_LENGTH[$1]}" "Fuzz/Corpus/$1" "$FUZZ_BUILD/corpus/$1"
    du -sh "Fuzz/Corpus/$1"
}

make_fuzz_seeds() {
    build fuzz runner
    RUNNER=$FUZZ_BUILD/Runner/runner python3 Fuzz/make_seeds.py build/fuzz/corpus
}
