# The step of ./check --all that lets memory and files fail in more places than the suite does. Sourced after
# Tools/checks.sh, not run.
#
# By hand, for all places:
#
#   FAULTS=all build/optimised/Tests/fault_tests                                      every request, every operation
#   SAVE_KILLS=1000 build/optimised/Tests/runner_tests --gtest_filter='SaveFaults.AKill*'
#   ENDURANCE=1 build/optimised/Tests/runner_tests --gtest_filter='Counters.AMillion*'
#   Tools/endurance.sh all 10000000                                                   and --draw with fewer

FAULTS_TRIED=12 # of each scenario of refused memory, and of each operation on files with each error

# Runs that draw are left to the suite, which tries fewer: a driver takes long to start.
check_faults() {
    build optimised fault_tests
    step "Refusing memory and failing files"
    quietly build/faults.log env FAULTS=$FAULTS_TRIED build/optimised/Tests/fault_tests --gtest_brief=1 \
        --gtest_filter='-*Pictures*:*Drawn*'
    grep -E 'refused|failed, ' build/faults.log || true
    grep -E '^\[  PASSED  \] [1-9]' build/faults.log || fail "no test ran; see build/faults.log"
    passed=$((passed + $(awk '/^\[  PASSED  \]/ { print $4 }' build/faults.log)))
}
