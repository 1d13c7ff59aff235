# Toolchain for WebAssembly by Debian's Emscripten. Its libraries come as sources (Tools/web_sources.sh), and the
# modules in cmake/web compile them in place of installed ones.
include(/usr/share/emscripten/cmake/Modules/Platform/Emscripten.cmake)
set(CAMERA_WEB_SOURCES "${CMAKE_CURRENT_LIST_DIR}/../build/sources" CACHE PATH "Where Tools/web_sources.sh has left the sources")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CAMERA_WEB_SOURCES)
list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}/web")
set(RAPIDJSON_INCLUDE "${CAMERA_WEB_SOURCES}/rapidjson-headers" CACHE PATH "Headers alone: those of Debian's package")
# WebAssembly's own exceptions: those by JavaScript make each call in a protected block a call out of the program.
# Said for all, since libpng jumps and Lua throws through frames of both languages.
set(camera_web_flags "-fwasm-exceptions -sSUPPORT_LONGJMP=wasm")
# The module's code on lanes: the intrinsics of x86, which Emscripten has by WebAssembly's vectors.
set(CMAKE_CXX_FLAGS_INIT "${camera_web_flags} -msimd128 -msse2")
set(CMAKE_C_FLAGS_INIT "${camera_web_flags}")
