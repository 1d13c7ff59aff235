# The steps of ./check, a function each. Sourced after Tools/steps.sh, not run.
#
# To add a step, write check_NAME here (or in a file of its own that is sourced here) and one run_check line in ./check.
# A step fails through fail, adds what it has tested to $passed, and says with leave_out what this machine cannot do.
#
# run_check TITLE FUNCTION [ARGUMENT...]   runs a step and keeps its time
# leave_out WHAT WHY                       a suite that this machine cannot run; the closing lines name it
# close_checks                             prints the times, what was left out, and the number of tests

passed=0
check_times=()
check_left_out=()

run_check() {
    local title=$1 start=$SECONDS
    shift
    "$@"
    check_times+=("$(printf '%5d s   %s' $((SECONDS - start)) "$title")")
}

leave_out() { check_left_out+=("$1: $2"); }

# The number of tests stands alone in the last line.
close_checks() {
    step "Times"
    printf '%s\n' "${check_times[@]}"
    [ ${#check_left_out[@]} = 0 ] || printf 'left out: %s\n' "${check_left_out[@]}"
    echo
    echo "$passed passed, 0 failed"
}

check_format() {
    step "Checking the format"
    quietly build/format.log bash -c 'git ls-files -z "*.cpp" "*.h" | xargs -0 clang-format --dry-run --Werror'
}

# Builds a preset and runs its tests. A program of tests (NAME_tests, in shares) counts by its content, every other
# entry of ctest as one. PRESET [TESTS AT A TIME, as many as processors unless given]
check_suite() {
    local preset=$1 jobs=${2:-$(nproc)} log=build/$1-tests.log directory=build/${1%-tests} programs others
    build "$preset"
    step "Testing ($preset)"
    if ! ctest --preset "$preset" -j "$jobs" >"$log" 2>&1; then
        tail -n 60 "$log" >&2
        fail "tests failed; their whole output is in $log"
    fi
    grep '^100% tests passed' "$log" || fail "no test ran; see $log"
    programs=$(awk '/^\[==========\] [0-9]+ tests? from .* ran\./ { n += $2 } END { print n + 0 }' \
        "$directory/Testing/Temporary/LastTest.log")
    others=$(ctest --preset "$preset" -N | grep -E 'Test +#[0-9]+: ' | grep -vcE ': [a-z]+_tests(\.Share[0-9]+)?$' || true)
    passed=$((passed + programs + others))
}

# lint BUILD CHECKS FILES...: reads the compile commands of the build. CHECKS are added to those of .clang-tidy. What only
# this compiler warns of is no finding; the counts of what system headers would be told are left out.
lint() {
    local directory=$1 checks=$2
    shift 2
    git ls-files -z "$@" |
        xargs -0 -P "$(nproc)" -n 4 \
            clang-tidy --quiet --checks="$checks" --extra-arg=-Wno-error --extra-arg=-Wno-unknown-warning-option \
            -p "$directory" 2>&1 |
        { grep -vE '^[0-9]+ warnings? generated' || true; }
}

RUNNER_SOURCES=("Runner/*.cpp" ":!Runner/Window/Sdl_*" ":!Runner/Inspect/Imgui_*")

# The commands of the sanitizer build, of each source alone.
prepare_lint() { quietly build/lint-configure.log cmake --preset dev -B build/lint -DCAMERA_AT_ONCE=OFF; }

# The paths through the Runner's functions are followed at night: three quarters of the time are theirs.
check_lint() {
    step "Checking with clang-tidy"
    prepare_lint
    quietly build/tidy.log lint build/lint "" "Files/*.cpp"
    quietly build/tidy-runner.log lint build/lint "-clang-analyzer-*" "${RUNNER_SOURCES[@]}"
}

# After the optimised suite, whose build it shares.
check_endurance() {
    step "Playing 100,000 frames: the memory stays"
    quietly build/endurance.log Tools/endurance.sh all 16667
    grep frames build/endurance.log
}

check_paths() {
    step "Following the Runner's paths with clang's analyzer"
    prepare_lint
    quietly build/tidy-paths.log lint build/lint "-*,clang-analyzer-*,-clang-analyzer-valist.Uninitialized" "${RUNNER_SOURCES[@]}"
}

# Real keys, buttons and gamepads in the window, each test on a display of its own.
check_window() {
    if ! (need $WINDOW_PACKAGES $WINDOW_TEST_PACKAGES); then
        leave_out "the window" "its packages cannot be installed, see the lines above"
        return
    fi
    check_suite window-tests
    quietly build/window-tidy.log lint build/window "" "Runner/Window/Sdl_*.cpp" "Runner/Inspect/Imgui_*.cpp" # the sanitizer build has no window
}

# A machine that cannot build for ARM still checks everything else.
check_armhf() {
    if ! prepare_armhf; then
        leave_out "32-bit ARM" "its compiler, emulator or libraries cannot be installed, see the lines above"
        return
    fi
    check_suite armhf
    build armhf-size
    step "Size of the module on 32-bit ARM: text, data, bss, all of it in bytes"
    grep -h '(TOTALS)' build/armhf-size-build.log || echo "as before: nothing was built anew"
}

# A machine without the tools for packages, or for those of ARM, still checks everything else.
check_packages() {
    if ! (need $PACKAGE_PACKAGES $WINDOW_PACKAGES); then
        leave_out "packages" "their tools cannot be installed, see the lines above"
        return
    fi
    check_suite packages
    if ! prepare_armhf; then
        leave_out "packages for 32-bit ARM" "its compiler, emulator or libraries cannot be installed, see the lines above"
        return
    fi
    check_suite packages-armhf
}

# Of the targets, every row of the table is one comparison that passed. TARGET...
compare_targets() {
    Tools/targets.sh "$@"
    local target
    for target in $(cat build/targets/left_out.txt); do
        leave_out "$target" "its tools cannot be installed, see the lines above"
    done
    passed=$((passed + $(wc -l <build/targets/table.txt) - 1))
}

# This processor's own compilers and levels, then the other targets. Under its emulator a 64-bit ARM plays the games for
# minutes; it does so at night.
check_targets() {
    step "Comparing compilers and levels of optimisation on this processor"
    quietly build/variants.log ctest --test-dir build/dev -R '^Bits\.EveryCompilerAndLevel' --no-tests=error
    passed=$((passed + 1))
    compare_targets x86-64 armhf arm64 riscv64 s390x wasm musl armhf-games web-games
}

check_games_on_arm64() { compare_targets arm64-games; }

# The random runs at many times their usual length. PROGRAM FILTER VARIABLE=NUMBER
long_run() {
    local log=build/night-${3%%=*}.log
    step "$3"
    quietly "$log" env "$3" "build/dev/Tests/$1" --gtest_filter="$2"
    grep -E '^\[  PASSED  \] [1-9]' "$log" || fail "no test ran; see $log"
    passed=$((passed + $(awk '/^\[  PASSED  \]/ { print $4 }' "$log")))
}

check_long_runs() {
    build dev
    long_run module_tests 'HostileState.Random*' HOSTILE_STREAMS=10000000
    long_run runner_tests 'StressSteps.*' STRESS_STEPS=1000000
    long_run runner_tests 'HostileSave.Random*' SAVE_MUTATIONS=100000
}
