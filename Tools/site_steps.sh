# The steps that make the site in out/site. Sourced after Tools/steps.sh by ./site and by Tools/check_browser.sh, not run.
source Tools/playground_steps.sh

SITE_PACKAGES="mkdocs python3 emscripten"

# The manual's pages and its games.
make_pages() {
    step "Making the pages"
    quietly build/site/stage.log python3 Web/site/stage.py . build/site/pages
    quietly build/site/mkdocs.log mkdocs build --clean --quiet --strict --config-file Web/site/mkdocs.yml
    python3 Web/site/write_games.py . out/site/examples
}

# The Runner in WebAssembly, for the games of the pages and of the playground.
make_web_runner() {
    quietly build/web-sources.log Tools/web_sources.sh
    build web web_runner
    mkdir -p out/site/runner
    cp build/web/runner/*.js build/web/runner/*.wasm out/site/runner
}

make_site() {
    make_pages
    make_playground out/site/playground
    make_web_runner
    python3 Web/site/check_links.py out/site || fail "the site has links that lead nowhere, see the lines above"
}
