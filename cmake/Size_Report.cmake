# Prints the size of the module's code and data in bytes, by object and in total, after each build of the module.
option(CAMERA_SIZE_REPORT "Print the module's size when it has been built" OFF)
if(CAMERA_SIZE_REPORT)
    find_program(CAMERA_SIZE NAMES ${CAMERA_TRIPLE}-size size REQUIRED)
    add_custom_command(TARGET camera_module POST_BUILD COMMAND ${CAMERA_SIZE} -t $<TARGET_FILE:camera_module> VERBATIM)
endif()
