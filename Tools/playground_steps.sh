# The steps that build the playground. Sourced after Tools/steps.sh, not run.

# Debian's Node and npm, unless others are there already: those of another source cannot be installed beside them.
need_node() {
    command -v node >/dev/null && command -v npm >/dev/null || need nodejs npm
}

# The packages of Web/package-lock.json, by its checksums. Fetched once, and anew when the list has changed.
fetch_web_packages() {
    cmp -s Web/package-lock.json build/web-packages.json && [ -d Web/node_modules ] && return
    need_node
    step "Fetching the packages of the pages"
    quietly build/web-packages.log npm ci --prefix Web --ignore-scripts
    mkdir -p build
    cp Web/package-lock.json build/web-packages.json
}

# make_playground OUT: the page, whose Runner stands in OUT/../runner and whose examples in OUT/../examples.
make_playground() {
    fetch_web_packages
    step "Making the playground"
    quietly build/playground.log node Web/playground/build.js "$1"
}
