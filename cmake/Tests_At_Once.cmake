# Compiles the tests of a folder as one: most of the time on a source of tests is what each makes anew of the same
# templates. A source whose names clash with those of its folder's others is compiled alone: add it here.
set(tests_compiled_alone
    Camera_Follow Camera_Follow_Step Functions_Matrix_Get Functions_Matrix_Set Matrix_Invert Trigonometry
    Input_Api Map_Tables Room_From_Map Script_Mistakes
    Run_Pictures Window_Run
    Playable_Games
    Convert
    Sandbox_List
    Save_Kit
    Refused_Memory)

# TARGET SOURCE...
function(camera_tests_at_once target)
    foreach(source IN LISTS ARGN)
        get_filename_component(name ${source} NAME_WE)
        get_filename_component(folder ${source} DIRECTORY)
        get_filename_component(group ${folder} NAME)
        string(REGEX REPLACE "_test$" "" name ${name})
        if(group STREQUAL "Module") # 50 sources would be the last to end: in parts by name
            string(REGEX MATCH "^(Camera_[A-F]|Camera_[G-R]|Camera|Functions?)" group ${name})
            string(APPEND group "Module")
        endif()
        if(NOT name IN_LIST tests_compiled_alone)
            set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
        endif()
    endforeach()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage) # what has no linkage has it in no other file either
endfunction()
