# Installs the module, looks at what was installed, builds the consumer from what was installed, and runs it.
# BUILD: the module's build tree. WORK: a folder of its own. HOST_DIR: where Support/Recording_Host* lies.
# FLAGS, COMPILER: as the module was built.
function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGN}: ${status}\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

# The host is copied, so that no include finds the rest of the tree.
file(REMOVE_RECURSE ${WORK})
file(COPY ${HOST_DIR}/Support DESTINATION ${WORK}/host/Tests FILES_MATCHING PATTERN "Recording_Host*")
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)

# Nothing is installed that a host does not need: Graphics_Support.h brings every header, but for the one that only
# sources that compute include.
set(include ${WORK}/installed/include/camera_module)
file(GLOB_RECURSE unneeded RELATIVE ${include} ${include}/*.h)
file(WRITE ${WORK}/umbrella.cpp "#include <Files/Graphics/Graphics_Support.h>\n")
run(${COMPILER} -std=c++17 -I${include} -MM ${WORK}/umbrella.cpp)
foreach(header IN LISTS unneeded)
    if(output MATCHES "/${header}[ \n]" OR header STREQUAL "Platform/Strict_Float.h")
        list(REMOVE_ITEM unneeded ${header})
    endif()
endforeach()
if(unneeded)
    message(FATAL_ERROR "installed, but no header of a host: ${unneeded}")
endif()

run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${WORK}/build -G Ninja -DCMAKE_BUILD_TYPE=Debug
    -DCMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS=${FLAGS}" -DCMAKE_CXX_STANDARD=17
    -DCMAKE_PREFIX_PATH=${WORK}/installed -DHOST_DIR=${WORK}/host)
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${WORK}/build/consumer)
if(NOT output MATCHES "camera 0 shows 640 x 480")
    message(FATAL_ERROR "the consumer said: ${output}")
endif()
