# Compiles most sources of a floor of the Runner as one: four fifths of Emscripten's time on a source are its headers
# and its own start. A source whose names clash with those of its floor's others is compiled alone: add it here.
set(compiled_alone
    Api/Api[_A-Za-z]* Api/Map_Tables
    App/Contact_Sheet App/Live_Run App/Pages App/Runner_Main App/Window_Stage
    Draw/Painter_Surfaces
    Host/Value
    Input/Input_Script
    Inspect/Overlay Inspect/Preview Inspect/View_Drag
    Lua/Strict_Fields Lua/Value_Text
    Save/Save_File Save/Sections
    World/World)
list(JOIN compiled_alone "|" alone_pattern)
foreach(floor Api App Base Draw Game Host Input Inspect Lua Save Window World)
    file(GLOB floor_sources CONFIGURE_DEPENDS ${floor}/*.cpp)
    list(FILTER floor_sources EXCLUDE REGEX "/(main|Gl_Surfaceless|Sdl_.*|Imgui_.*)\\.cpp$")
    list(FILTER floor_sources EXCLUDE REGEX "/(${alone_pattern})\\.cpp$")
    set_source_files_properties(${floor_sources} PROPERTIES UNITY_GROUP ${floor})
endforeach()
set_target_properties(runner_host PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
