#!/usr/bin/env bash
# Fetches what the Runner in WebAssembly is compiled from: Lua, zlib, libpng, zstd, pugixml and RapidJSON, of Debian's
# packages, into build/lua and build/sources. Safe to run again.
source "$(dirname "$0")/steps.sh"

Tools/lua_source.sh
Tools/source_package.sh build/sources zlib libpng1.6 libzstd pugixml

# RapidJSON is headers alone, the same for every machine; those that are installed have Debian's mends.
need rapidjson-dev
headers=build/sources/rapidjson-headers
if ! cmp -s /usr/include/rapidjson/rapidjson.h $headers/rapidjson/rapidjson.h; then
    rm -rf $headers
    mkdir -p $headers
    cp -r /usr/include/rapidjson $headers/
fi
