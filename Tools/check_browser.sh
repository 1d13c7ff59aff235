# The step of ./check --all that makes the site and plays it in Debian's Chromium, without a display. Sourced after
# Tools/checks.sh, not run. out/screens has a picture of each page then.

source Tools/site_steps.sh

BROWSER_PACKAGES="chromium"

# Node's own test runner: FILE...
node_tests() {
    local log=build/browser-tests.log
    if ! RUNNER=$PWD/build/optimised/Runner/runner node --test --test-reporter=tap "$@" >"$log" 2>&1; then
        grep -A 25 '^ *not ok' "$log" | head -n 80 >&2
        fail "tests failed; their whole output is in $log"
    fi
    grep '^# pass [1-9]' "$log" || fail "no test ran; see $log"
    passed=$((passed + $(awk '/^# pass / { n += $3 } END { print n }' "$log")))
}

check_browser() {
    if ! (need $SITE_PACKAGES $BROWSER_PACKAGES && fetch_web_packages); then
        leave_out "the browser" "its packages cannot be installed, see the lines above"
        return
    fi
    make_site
    build optimised runner
    step "Playing the site in Chromium"
    check_playground
    node_tests Tests/Web/site/*.test.mjs
}
