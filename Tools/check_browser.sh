# The step of ./check --all that makes the site and plays it in Debian's Chromium, without a display. Sourced after
# Tools/checks.sh, not run. out/screens has a picture of each page then.

source Tools/site_steps.sh
source Tools/check_playground.sh

BROWSER_PACKAGES="chromium"

check_browser() {
    if ! (need $SITE_PACKAGES $BROWSER_PACKAGES && fetch_web_packages); then
        leave_out "the browser" "its packages cannot be installed, see the lines above"
        return
    fi
    make_site
    build optimised runner
    step "Playing the site in Chromium"
    check_playground
    RUNNER=$PWD/build/optimised/Runner/runner node_tests browser Tests/Web/site/*.test.mjs
}
