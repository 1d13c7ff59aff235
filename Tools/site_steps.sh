# The steps that make the site in out/site. Sourced after Tools/steps.sh by ./site and by Tools/check_browser.sh, not run.

SITE_PACKAGES="mkdocs python3"

# The manual's pages, its games, and the check of every link.
make_pages() {
    local links=${1:-all}
    step "Making the pages"
    quietly build/site/stage.log python3 Web/site/stage.py . build/site/pages
    quietly build/site/mkdocs.log mkdocs build --clean --quiet --strict --config-file Web/site/mkdocs.yml
    python3 Web/site/write_games.py . out/site/examples
}

make_site() {
    make_pages
    python3 Web/site/check_links.py out/site || fail "the site has links that lead nowhere, see the lines above"
}
