# The step of ./check --all that makes the site and plays it in Debian's Chromium, without a display. Sourced after
# Tools/checks.sh, not run. out/screens has a picture of each page then.

source Tools/site_steps.sh

BROWSER_PACKAGES="chromium"

# node_tests NAME FILES...: runs tests of Node's own runner, two files at a time, and counts them.
node_tests() {
    local log=build/$1.log
    shift
    if ! node --test --test-concurrency=2 --test-reporter=tap "$@" >"$log" 2>&1; then
        grep -A 15 '^not ok' "$log" | head -n 60 >&2
        fail "tests failed; their whole output is in $log"
    fi
    passed=$((passed + $(sed -n 's/^# pass //p' "$log")))
}

check_browser() {
    if ! (need $SITE_PACKAGES $BROWSER_PACKAGES && fetch_web_packages); then
        leave_out "the browser" "its packages cannot be installed, see the lines above"
        return
    fi
    make_site
    build optimised runner
    step "Testing the playground and the Runner in WebAssembly, without a browser"
    node_tests web Tests/Web/playground/*.test.mjs Tests/Web/runner/{play,keep}.test.mjs
    step "Playing the site in Chromium"
    rm -rf out/screens
    RUNNER=$PWD/build/optimised/Runner/runner SCREENS=$PWD/out/screens \
        node_tests browser Tests/Web/site/*.test.mjs Tests/Web/playground/browser/*.test.mjs Tests/Web/runner/page.test.mjs
}
