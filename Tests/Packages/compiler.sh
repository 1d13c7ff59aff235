#!/usr/bin/env bash
# The module compiles with a compiler, and a host that includes its header with every warning on hears none, in each
# version of C++ that hosts use.
#
#   compiler.sh MODULE COMPILER
source "$(dirname "$0")/common.sh"
module=$1 compiler=$2
must "the compiler" command -v "$compiler"

warnings=(-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
for standard in c++17 c++20 c++2b; do
    must "the headers as $standard" "$compiler" -std=$standard "${warnings[@]}" -Wsign-conversion -Wold-style-cast \
        -I"$module" -fsyntax-only -x c++ - <<<'#include <Files/Graphics/Graphics_Support.h>'
done
must "the sources" bash -o pipefail -c 'printf "%s\0" "$0"/Files/Graphics/*.cpp | xargs -0 -P 2 -n 6 "$@"' "$module" \
    "$compiler" -std=c++17 "${warnings[@]}" -I"$module" -fno-exceptions -fno-rtti -fsyntax-only
