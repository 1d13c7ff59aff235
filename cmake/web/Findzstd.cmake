# The decoder of zstd for WebAssembly, compiled from the source of Debian's package (Tools/web_sources.sh).
if(NOT TARGET zstd::libzstd_shared)
    enable_language(C)
    set(zstd_source "${CAMERA_WEB_SOURCES}/libzstd/lib")
    file(GLOB zstd_files "${zstd_source}/common/*.c" "${zstd_source}/decompress/*.c")
    add_library(web_zstd STATIC ${zstd_files})
    target_include_directories(web_zstd SYSTEM PUBLIC "${zstd_source}")
    target_compile_definitions(web_zstd PRIVATE ZSTD_DISABLE_ASM=1)
    target_compile_options(web_zstd PRIVATE -w)
    add_library(zstd::libzstd_shared ALIAS web_zstd) # the name that the Runner links
endif()
set(zstd_FOUND TRUE)
