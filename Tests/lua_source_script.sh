#!/bin/sh
# The script that fetches the source of Lua: what it refuses, and what a second run costs.
#
#   lua_source_script.sh PROJECT WORK      with a source already fetched in PROJECT/build/lua
project=$1
work=$2
failures=0

complain()
{
    echo "$1" >&2
    failures=$((failures + 1))
}

# expect_refusal TEXT: the script ends with status 1 and one line of error that contains the text, and leaves no source.
expect_refusal()
{
    said=$(PATH="$work/bin:$PATH" "$project/Tools/lua_source.sh" "$work/lua" 2>&1 >/dev/null)
    [ $? = 1 ] || complain "expected status 1 for: $1"
    [ "$(printf '%s\n' "$said" | wc -l)" = 1 ] || complain "expected one line, got: $said"
    case "$said" in
    "error: "*"$1"*) ;;
    *) complain "expected '$1' in: $said" ;;
    esac
    [ ! -e "$work/lua/complete" ] || complain "a refused source counts as complete"
}

rm -rf "$work"
mkdir -p "$work/bin" "$work/lua"

# A machine without a connection.
printf '#!/bin/sh\nexit 100\n' >"$work/bin/apt-get"
chmod +x "$work/bin/apt-get"
expect_refusal "cannot fetch the source of Lua"

# Another archive under the right name.
echo "no archive" >"$work/lua/lua5.4_5.4.4.orig.tar.gz"
expect_refusal "is not the source that the Runner is built from"

# The right one is taken without a connection, and the second run changes nothing.
archive=$project/build/lua/lua5.4_5.4.4.orig.tar.gz
if [ -e "$archive" ]; then
    cp "$archive" "$work/lua/"
    PATH="$work/bin:$PATH" "$project/Tools/lua_source.sh" "$work/lua" || complain "the archive was not taken"
    [ -e "$work/lua/source/src/lua.h" ] || complain "there is no source"
    touch "$work/lua/source/mark"
    PATH="$work/bin:$PATH" "$project/Tools/lua_source.sh" "$work/lua" || complain "the second run failed"
    [ -e "$work/lua/source/mark" ] || complain "the second run unpacked again"

    # A source without the patches of today is made anew.
    sed -i '$d' "$work/lua/complete"
    PATH="$work/bin:$PATH" "$project/Tools/lua_source.sh" "$work/lua" || complain "the third run failed"
    [ ! -e "$work/lua/source/mark" ] || complain "a source with other patches was taken"
fi
[ "$failures" = 0 ]
