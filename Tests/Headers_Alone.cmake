# Checks that each header compiles alone: generates one source per header, which includes nothing else.
file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE "${PROJECT_SOURCE_DIR}"
    "${PROJECT_SOURCE_DIR}/Platform/*.h" "${PROJECT_SOURCE_DIR}/Files/*.h")
set(header_sources)
foreach(header IN LISTS headers)
    string(MAKE_C_IDENTIFIER "${header}" identifier)
    set(source "${CMAKE_CURRENT_BINARY_DIR}/headers_alone/${identifier}.cpp")
    file(CONFIGURE OUTPUT "${source}" CONTENT "#include \"${header}\"\n")
    list(APPEND header_sources "${source}")
endforeach()

add_library(headers_alone OBJECT ${header_sources})
target_link_libraries(headers_alone PRIVATE CameraModule::host_interface)
camera_strict(headers_alone)
