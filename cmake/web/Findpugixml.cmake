# pugixml for WebAssembly, compiled from the source of Debian's package (Tools/web_sources.sh).
if(NOT TARGET pugixml::pugixml)
    set(pugixml_source "${CAMERA_WEB_SOURCES}/pugixml/src")
    add_library(web_pugixml STATIC "${pugixml_source}/pugixml.cpp")
    target_include_directories(web_pugixml SYSTEM PUBLIC "${pugixml_source}")
    target_compile_options(web_pugixml PRIVATE -w)
    add_library(pugixml::pugixml ALIAS web_pugixml)
endif()
set(pugixml_FOUND TRUE)
