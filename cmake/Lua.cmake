# Lua, compiled from source as C++: its errors unwind, and its results are the same in every run and on every target.
set(CAMERA_LUA "${PROJECT_SOURCE_DIR}/build/lua" CACHE PATH "Where Tools/lua_source.sh has left the source of Lua")

set(lua_patches "${PROJECT_SOURCE_DIR}/Runner/Lua/Lua_Patches")
file(GLOB lua_patch_files CONFIGURE_DEPENDS "${lua_patches}/*.patch")
set(lua_complete "")
if(EXISTS "${CAMERA_LUA}/complete")
    file(READ "${CAMERA_LUA}/complete" lua_complete)
endif()
foreach(patch IN LISTS lua_patch_files)
    file(SHA256 "${patch}" checksum)
    if(NOT lua_complete MATCHES "${checksum}")
        message(FATAL_ERROR " no source of Lua with these patches in ${CAMERA_LUA}: run Tools/lua_source.sh first")
    endif()
endforeach()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lua_patch_files} "${CAMERA_LUA}/complete")

# The core, and the libraries that games get.
set(lua_sources "")
foreach(name lapi lauxlib lbaselib lcode lcorolib lctype ldebug ldo ldump lfunc lgc llex lmathlib lmem lobject lopcodes
        lparser lstate lstring lstrlib ltable ltablib ltm lundump lutf8lib lvm lzio)
    list(APPEND lua_sources "${CAMERA_LUA}/source/src/${name}.c")
endforeach()
set_source_files_properties(${lua_sources} PROPERTIES LANGUAGE CXX)

add_library(runner_lua STATIC ${lua_sources})
target_include_directories(runner_lua SYSTEM PUBLIC "${CAMERA_LUA}/source/src")
target_include_directories(runner_lua PUBLIC "${PROJECT_SOURCE_DIR}")
target_compile_definitions(runner_lua PUBLIC LUA_COMPAT_5_3)
target_compile_options(runner_lua PRIVATE -w -ffp-contract=off) # the warnings are not ours to mend
# The interpreter's loop is where every game spends its time: always optimised, and of the sanitizers only
# AddressSanitizer, which sees blocks that our own code hands over.
target_compile_options(runner_lua PRIVATE -O2 -fno-sanitize=undefined)
