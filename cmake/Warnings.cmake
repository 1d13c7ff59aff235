# Every warning is an error, because a warning that is tolerated hides the next one. Not in a project that takes the
# module in: its compilers may be newer and warn of more.
function(camera_strict target)
    if(NOT CAMERA_STRICT)
        return()
    endif()
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Werror
        -Wshadow              # readers mistake a name that hides another
        -Wconversion          # a silent narrowing loses data
        -Wdouble-promotion    # doubles must not slip into float arithmetic
        -Wcast-align          # misaligned access faults on ARM
        -Wmissing-declarations # every external function has a declared contract
        -Wimplicit-fallthrough
        -Wformat=2)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -Wduplicated-cond -Wlogical-op)
        if(CAMERA_SANITIZE) # false reports in the code that sanitizers add
            target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
        endif()
    endif()
endfunction()
