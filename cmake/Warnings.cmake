# Every warning is an error: a warning that is left standing hides the next one.
function(camera_strict target)
    target_compile_options(${target} PRIVATE
        -Wall -Wextra -Wpedantic -Werror
        -Wshadow              # a name that hides another is read wrongly
        -Wconversion          # a silent narrowing loses data
        -Wdouble-promotion    # doubles must not slip into float arithmetic
        -Wcast-align          # misaligned access faults on ARM
        -Wmissing-declarations # every external function has a declared contract
        -Wimplicit-fallthrough
        -Wformat=2)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        target_compile_options(${target} PRIVATE -Wduplicated-cond -Wlogical-op)
        if(CAMERA_SANITIZE) # the checks that the sanitizers add confuse this one; other builds keep it
            target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
        endif()
    endif()
endfunction()
