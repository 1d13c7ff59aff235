# The installed package: another runner calls find_package(CameraModule) and links CameraModule::camera.
include(CMakePackageConfigHelpers)

install(TARGETS camera host_interface EXPORT CameraModuleTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT CameraModuleTargets NAMESPACE CameraModule:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/CameraModule)

# The headers that a host needs: every interface, and of the module what Graphics_Support.h brings.
set(camera_public_headers Camera Camera_Follow Camera_GCProxy Camera_Handle Camera_Manager Colour Function_Arguments Functions Graphics_Support
    Image_Writers)
list(TRANSFORM camera_public_headers REPLACE "(.+)" "Files/Graphics/\\1.h")
install(DIRECTORY Platform Files DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/camera_module FILES_MATCHING PATTERN "*.h"
    PATTERN "Files/Graphics" EXCLUDE PATTERN "Platform/Lanes.h" EXCLUDE)
install(FILES ${camera_public_headers} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/camera_module/Files/Graphics)

configure_package_config_file(cmake/CameraModuleConfig.cmake.in CameraModuleConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/CameraModule)
write_basic_package_version_file(CameraModuleConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/CameraModuleConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/CameraModuleConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/CameraModule)
