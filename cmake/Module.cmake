# The module and the host's interfaces. Their targets have names that no host's project has; who links the module, here
# and elsewhere, says CameraModule::camera.
if(BUILD_SHARED_LIBS)
    set(no_shared_library "CameraModule is always a static library, because its host's program defines what it leaves undefined")
    if(PROJECT_IS_TOP_LEVEL)
        message(FATAL_ERROR " ${no_shared_library}: configure without BUILD_SHARED_LIBS, and with CAMERA_PIC=ON where a shared library links it")
    endif()
    message(STATUS "${no_shared_library}")
endif()

# ---- the host's interfaces: headers only ----
add_library(camera_module_interface INTERFACE)
add_library(CameraModule::host_interface ALIAS camera_module_interface)
target_include_directories(camera_module_interface INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/camera_module>)
target_compile_features(camera_module_interface INTERFACE cxx_std_17)

# ---- the module ----
file(GLOB camera_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Files/Graphics/*.cpp)
if(CAMERA_PNG)
    find_package(PNG REQUIRED)
elseif(CAMERA_RUNNER OR CAMERA_TESTS)
    message(FATAL_ERROR " CAMERA_PNG=OFF builds the module alone: add -DCAMERA_RUNNER=OFF -DCAMERA_TESTS=OFF")
else()
    list(FILTER camera_sources EXCLUDE REGEX "/Image_PNG\\.cpp$")
endif()
add_library(camera_module STATIC ${camera_sources})
add_library(CameraModule::camera ALIAS camera_module)
target_link_libraries(camera_module PUBLIC camera_module_interface)
if(CAMERA_PNG)
    target_link_libraries(camera_module PRIVATE PNG::PNG)
endif()
set_target_properties(camera_module PROPERTIES EXPORT_NAME camera)
set_target_properties(camera_module_interface PROPERTIES EXPORT_NAME host_interface)
if(CAMERA_PIC)
    set_target_properties(camera_module PROPERTIES POSITION_INDEPENDENT_CODE ON)
endif()
if(MSVC)
    target_compile_options(camera_module PRIVATE /GR- /fp:precise)
else()
    # Nobody reads errno after a root, which then is one instruction.
    target_compile_options(camera_module PRIVATE -fno-exceptions -fno-rtti -ffp-contract=off -fno-math-errno)
endif()
camera_strict(camera_module)
if(CAMERA_STRICT AND NOT MSVC)
    target_compile_options(camera_module PRIVATE -Wnull-dereference) # elsewhere it accuses the standard library's inlined code
endif()
include(cmake/Size_Report.cmake)

# Shorter names for this project's own folders.
if(PROJECT_IS_TOP_LEVEL)
    add_library(camera ALIAS camera_module)
    add_library(host_interface ALIAS camera_module_interface)
endif()
