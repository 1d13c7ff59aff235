# What is installed, in two components: "dev" is the module for another runner, which calls find_package(CameraModule) or
# pkg-config and links CameraModule::camera; "runner" is the Runner with the example games. Whoever adds something that
# is installed names one of them.
#
# package_contents builds everything that is installed, and what the tests of the packages need besides.
include(CMakePackageConfigHelpers)
add_custom_target(package_contents DEPENDS camera_module)
set(camera_cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/CameraModule)

install(TARGETS camera_module camera_module_interface EXPORT CameraModuleTargets
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
install(EXPORT CameraModuleTargets NAMESPACE CameraModule:: DESTINATION ${camera_cmake_folder} COMPONENT dev)

# The headers that a host needs: every interface, and of the module what Graphics_Support.h brings.
set(camera_public_headers Camera Camera_Follow Camera_GCProxy Camera_Handle Camera_Manager Colour Function_Arguments Functions Graphics_Support
    Image_Writers Version)
list(TRANSFORM camera_public_headers REPLACE "(.+)" "Files/Graphics/\\1.h")
file(GLOB_RECURSE camera_installed_headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR} Platform/*.h Files/*.h)
list(FILTER camera_installed_headers EXCLUDE REGEX "^Files/Graphics/|^Platform/Lanes\\.h$")
list(APPEND camera_installed_headers ${camera_public_headers})
foreach(header IN LISTS camera_installed_headers)
    get_filename_component(folder ${header} DIRECTORY)
    install(FILES ${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/camera_module/${folder} COMPONENT dev)
endforeach()

# The host check, which a host links for its tests.
if(CAMERA_HOST_CHECK)
    add_dependencies(package_contents host_check)
    install(TARGETS host_check EXPORT CameraModuleTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
    install(FILES Host_Check/Host_Check.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/camera_host_check/Host_Check
        COMPONENT dev)
endif()

configure_package_config_file(cmake/CameraModuleConfig.cmake.in CameraModuleConfig.cmake
    INSTALL_DESTINATION ${camera_cmake_folder})
write_basic_package_version_file(CameraModuleConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/CameraModuleConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/CameraModuleConfigVersion.cmake
    DESTINATION ${camera_cmake_folder} COMPONENT dev)

# pkg-config finds the prefix from where its file lies, so that the folder can be moved.
set(camera_pc_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH camera_pc_to_prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" camera_pc_to_prefix "${camera_pc_to_prefix}")
set(camera_pc_requires "")
if(CAMERA_PNG)
    set(camera_pc_requires "Requires: libpng\n")
endif()
configure_file(cmake/camera_module.pc.in camera_module.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/camera_module.pc DESTINATION ${camera_pc_folder} COMPONENT dev)

# Hosts to copy. Each folder is a project of its own that finds the installed package.
set(camera_examples_folder ${CMAKE_INSTALL_DATAROOTDIR}/doc/libcamera-module-dev/examples)
if(EXISTS ${PROJECT_SOURCE_DIR}/Examples)
    install(DIRECTORY Examples/ DESTINATION ${camera_examples_folder} COMPONENT dev)
endif()

# "runner" is a common word: the installed program has the project's name in front.
if(CAMERA_RUNNER)
    add_dependencies(package_contents runner)
    install(PROGRAMS $<TARGET_FILE:runner> DESTINATION ${CMAKE_INSTALL_BINDIR} RENAME camera-module-runner COMPONENT runner)
    install(DIRECTORY Games kit DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/camera-module-runner COMPONENT runner)
    install(FILES Docs/api.lua DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/camera-module-runner/lua COMPONENT runner)
endif()
