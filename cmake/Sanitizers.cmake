# CAMERA_SANITIZE is the list for -fsanitize, for example "address,undefined". It applies to every target.
set(CAMERA_SANITIZE "" CACHE STRING "Sanitizers to build with")
if(CAMERA_SANITIZE)
    # vptr checks need run-time type information, which the module is built without.
    add_compile_options(-fsanitize=${CAMERA_SANITIZE} -fno-sanitize=vptr -fno-sanitize-recover=all
        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${CAMERA_SANITIZE})
endif()
