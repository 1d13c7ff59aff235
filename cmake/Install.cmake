# Another runner takes the module with find_package(CameraModule) and links CameraModule::camera.
include(CMakePackageConfigHelpers)

install(TARGETS camera host_interface EXPORT CameraModuleTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT CameraModuleTargets NAMESPACE CameraModule:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/CameraModule)
install(DIRECTORY Platform Files DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/camera_module FILES_MATCHING PATTERN "*.h")

configure_package_config_file(cmake/CameraModuleConfig.cmake.in CameraModuleConfig.cmake
    INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/CameraModule)
write_basic_package_version_file(CameraModuleConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES
    ${CMAKE_CURRENT_BINARY_DIR}/CameraModuleConfig.cmake ${CMAKE_CURRENT_BINARY_DIR}/CameraModuleConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/CameraModule)
