#!/bin/sh
# Docs/Your_Engine.md followed literally, from an empty folder with only the package installed.
#
#   tutorial.sh CMAKE BUILD WORK COMPILER SOURCE_DIR
#
# BUILD: the module's build tree. WORK: a folder of the test's own. SOURCE_DIR: the project, of which only the document
# and the starter host, for the comparison at the end, are read.
#
# A block is appended to the file that its first line names, which is also the file that the text has named last, since
# readers see only that; main.cpp begins anew after each heading. Blocks headed sh are run as they stand, with the package's
# folder in place of /usr. A block headed text is what a program has printed.
set -eu
cmake=$1 build=$2 work=$3 compiler=$4 source=$5
document=$source/Docs/Your_Engine.md

fail() {
    echo "Docs/Your_Engine.md: $1" >&2
    exit 1
}

rm -rf "$work"
mkdir -p "$work"
"$cmake" --install "$build" --prefix "$work/installed" >"$work/log"

# The document as a shell script of calls to these three.
put() {
    [ ! -s "$1" ] || echo >>"$1"
    cat >>"$1"
}
printed() {
    cat >"$work/expected"
    tail -n "$(wc -l <"$work/expected")" "$work/stdout" | diff "$work/expected" - >&2 || fail "$1 prints something else"
    programs=$((programs + 1))
}
failed() {
    cat "$work/stdout" "$work/stderr" >&2
    fail "the commands of $1 fail"
}

awk -v prefix="$work/installed" -v work="$work" '
/^## / { heading = $2; sub(/:$/, "", heading); fresh = 1 }
!inFile && !inCommands {
    for (rest = $0; match(rest, /`[A-Za-z_]+\.(cpp|h|txt)`/); rest = substr(rest, RSTART + RLENGTH))
        named = substr(rest, RSTART + 1, RLENGTH - 2)
}
/^```[a-z]+ [A-Za-z_]+\.[a-z]+$/ {
    if ($2 != named) print "fail \"line " NR " appends to " $2 ", but the text names " named "\""
    if ($2 == "main.cpp" && fresh) { print "rm -f main.cpp"; fresh = 0 }
    print "put " $2 " <<\"END_OF_BLOCK\""; inFile = 1; next
}
/^```sh$/ { print "{"; inCommands = 1; next }
/^```text$/ { print "printed " heading " <<\"END_OF_BLOCK\""; inFile = 1; next }
/^```$/ && inFile { print "END_OF_BLOCK"; inFile = 0; next }
/^```$/ && inCommands { print "} >" work "/stdout 2>" work "/stderr || failed " heading; inCommands = 0; next }
inCommands { gsub(/\/usr\//, prefix "/") }
inFile || inCommands { print }' "$document" >"$work/steps.sh"

# The check of virtual tables needs run-time type information, which the module has not.
export CMAKE_PREFIX_PATH="$work/installed" CMAKE_GENERATOR=Ninja CXX="$compiler"
export CXXFLAGS="-Wall -Wextra -Wpedantic -Wconversion -Werror -g1 -fsanitize=address,undefined
    -fno-sanitize=vptr -fno-sanitize-recover=all"
CXXFLAGS=$(echo $CXXFLAGS)
programs=0
cd "$work"
. "$work/steps.sh"
[ "$programs" -eq 5 ] || fail "$programs programs were compared with what they print, not 5"

# Its other claims: projections and stubs; and where the package has the host check, every
# promise of the interfaces.
cp "$source/Tests/Examples/claims_test.cpp" "$source/Tests/Examples/tutorial_hooks.cpp" .
cp "$source/Examples/starter_host/check_hooks.cpp" .
cat >>CMakeLists.txt <<'END'
set(objects $<TARGET_OBJECTS:my_runner>)
add_executable(claims_test claims_test.cpp stubs.cpp $<FILTER:${objects},INCLUDE,host.cpp>)
target_link_libraries(claims_test PRIVATE CameraModule::camera)
if(TARGET CameraModule::host_check)
    add_executable(my_runner_check tutorial_hooks.cpp $<FILTER:${objects},EXCLUDE,main.cpp>)
    target_link_libraries(my_runner_check PRIVATE CameraModule::host_check)
endif()
END
"$cmake" --build build >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "the tests of its claims cannot be built"; }
build/claims_test >&2 || fail "it claims something else"
[ ! -e build/my_runner_check ] || build/my_runner_check --level images --same-bits >"$work/log" 2>&1 ||
    { cat "$work/log" >&2; fail "its host breaks a promise"; }

for file in host.cpp host.h stubs.cpp; do
    diff "$source/Examples/starter_host/$file" "$file" >&2 || fail "its $file is not the starter host's"
done
