# The step of ./check --all that tests the playground: its modules without a browser, and the page in Chromium where
# out/site has been built. Sourced after Tools/checks.sh, not run.
source Tools/playground_steps.sh

# node_tests NAME FILES...: runs tests of Node's own runner, and counts them.
node_tests() {
    local log=build/$1.log
    shift
    if ! node --test --test-reporter=tap "$@" >"$log" 2>&1; then
        grep -A 15 '^not ok' "$log" | head -n 60 >&2
        fail "tests failed; their whole output is in $log"
    fi
    passed=$((passed + $(sed -n 's/^# pass //p' "$log")))
}

check_playground() {
    if ! (fetch_web_packages); then
        leave_out "playground" "Node or its packages cannot be installed, see the lines above"
        return
    fi
    step "Testing the playground"
    node_tests playground Tests/Web/playground/*.test.mjs
    if [ ! -e out/site/runner/runner_core.wasm ] || ! (need chromium); then
        leave_out "playground in a browser" "there is no site in out/site, or no Chromium"
        return
    fi
    RUNNER=$PWD/build/optimised/Runner/runner node_tests playground-browser Tests/Web/playground/browser/page.test.mjs
}
