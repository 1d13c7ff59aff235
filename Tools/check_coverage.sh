# Which lines and branches the tests run: the functions of ./coverage, and the step of ./check --all that holds the module
# at all of both. Sourced after Tools/steps.sh (and Tools/checks.sh, for the step), not run.

COVERAGE_BUILD=build/coverage
COVERAGE_OUT=out/coverage
MODULE_TESTS=$COVERAGE_BUILD/Tests/module_tests
RUNNER_TESTS="$COVERAGE_BUILD/Tests/runner_tests $COVERAGE_BUILD/Tests/fault_tests"
RUNNER_PROGRAMS="$RUNNER_TESTS $COVERAGE_BUILD/Runner/runner $COVERAGE_BUILD/Tests/Window/window_tests"

# Runs a program of tests in two halves at a time, with counters in mapped files (%c), one for each program that it starts
# (%m). A test that fails ends the measurement. PROGRAM
count_tests() {
    local program=$1 name=${1##*/} share shares=() failed=
    for share in 0 1; do
        LLVM_PROFILE_FILE="$PWD/$COVERAGE_BUILD/counts/$name-$share-%m%c.profraw" GTEST_TOTAL_SHARDS=2 \
            GTEST_SHARD_INDEX=$share "$program" --gtest_brief=1 >"$COVERAGE_BUILD/$name-$share.log" 2>&1 &
        shares+=($!)
    done
    for share in "${shares[@]}"; do
        wait "$share" || failed=1
    done
    [ -z "$failed" ] || fail "tests failed; their output is in $COVERAGE_BUILD/$name-*.log"
    grep -qh '^\[  PASSED  \] [1-9]' "$COVERAGE_BUILD/$name"-?.log || fail "no test of $name ran"
}

# Sources under one name each: a cache of the compiler's that makes paths relative would give some of them two.
# PRESET TARGET...
build_coverage() { CCACHE_BASEDIR='' build "$@"; }

# Real keys in windows on displays of their own. More at a time than there are processors: they wait most of their time.
count_window_tests() {
    local log=$COVERAGE_BUILD/window_tests.log
    LLVM_PROFILE_FILE="$PWD/$COVERAGE_BUILD/counts/r_window-%m%c.profraw" \
        ctest --preset coverage-window -j 4 >"$log" 2>&1 || { tail -n 60 "$log" >&2 && fail "tests of the window failed; see $log"; }
    grep -q '^100% tests passed' "$log" || fail "no test of the window ran; see $log"
}

# The maps that are drawn beside the editor's own renderer.
count_maps() {
    if ! (need $MAP_PACKAGES); then
        echo "Not counted: the editor's example maps, because its package cannot be installed."
        return
    fi
    build_coverage coverage-window compare_pictures
    (export LLVM_PROFILE_FILE="$PWD/$COVERAGE_BUILD/counts/r_maps-%m%c.profraw" MAP_BUILD=$COVERAGE_BUILD &&
        compare_maps >"$COVERAGE_BUILD/maps.log") || fail "maps are not drawn as expected; see $COVERAGE_BUILD/maps.log"
}

# llvm-cov with the programs and the joined counters of a report. COMMAND NAME PROGRAMS [ARGUMENT...]
of_counters() {
    local command=$1 name=$2 programs others
    read -ra programs <<<"$3"
    others=("${programs[@]:1}")
    shift 3
    llvm-cov "$command" "${programs[0]}" "${others[@]/#/-object=}" -instr-profile "$COVERAGE_BUILD/$name.profdata" "$@"
}

# Joins the counters, writes $COVERAGE_OUT/NAME.txt and holds it against the limits. NAME PROGRAMS COUNTERS FOLDER=LIMITS
report_coverage() {
    local name=$1 folder=${4%%=*}
    mkdir -p "$COVERAGE_OUT"
    quietly "$COVERAGE_BUILD/merge.log" llvm-profdata merge -o "$COVERAGE_BUILD/$name.profdata" $3
    of_counters export "$name" "$2" "$folder" >"$COVERAGE_BUILD/$name.json"
    python3 Tools/coverage_report.py "$COVERAGE_BUILD/$name.json" "$COVERAGE_OUT/$name.txt" Tools/coverage_exceptions.txt \
        "$4" || fail "the tests run less of $folder than they must"
}

# The sources with the counts beside their lines. NAME PROGRAMS FOLDER
write_coverage_pages() {
    rm -rf "$COVERAGE_OUT/$1"
    of_counters show "$1" "$2" -format=html -show-branches=count -output-dir="$COVERAGE_OUT/$1" "$3" \
        >"$COVERAGE_BUILD/pages.log" 2>&1 || fail "llvm-cov failed, see $COVERAGE_BUILD/pages.log"
}

# The module by its own tests: every line and every branch.
cover_module() {
    build_coverage coverage module_tests
    step "Counting lines and branches: the module"
    rm -rf "$COVERAGE_BUILD/counts"
    count_tests "$MODULE_TESTS"
    report_coverage module "$MODULE_TESTS" "$COVERAGE_BUILD/counts/module_tests-*" Files/Graphics=100,100
}

# The Runner by its own tests, and by the runners that they start.
cover_runner() {
    build_coverage coverage-window runner_tests runner fault_tests window_tests
    step "Counting lines and branches: the Runner"
    local program
    for program in $RUNNER_TESTS; do
        count_tests "$program"
    done
    count_window_tests
    count_maps
    report_coverage runner "$RUNNER_PROGRAMS" "$COVERAGE_BUILD/counts/r* $COVERAGE_BUILD/counts/fault_tests*" Runner=95,90
}

check_coverage() {
    if ! (need $COVERAGE_PACKAGES); then
        leave_out "coverage" "its tools cannot be installed, see the lines above"
        return
    fi
    cover_module
    passed=$((passed + 1))
}
