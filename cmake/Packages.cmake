# Debian packages, one for each component of Install.cmake: "cpack" in a build folder, best of the preset "packages".
set(CAMERA_PACKAGE_CONTACT "Camera module maintainers <camera-module@packages.invalid>" CACHE STRING
    "Name and address that stand in the Debian packages")
set(camera_dev_package libcamera-module-dev)
set(camera_runner_package camera-module-runner)

# Debian asks for a copyright file, a compressed changelog, and a manual page of each program.
find_program(CAMERA_GZIP gzip)
if(NOT CAMERA_GZIP)
    return()
endif()
function(camera_compressed source target)
    configure_file(cmake/debian/${source} ${PROJECT_BINARY_DIR}/debian/${target} @ONLY)
    execute_process(COMMAND ${CAMERA_GZIP} -9nf ${PROJECT_BINARY_DIR}/debian/${target} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
camera_compressed(changelog.in changelog)
camera_compressed(camera-module-runner.1.in camera-module-runner.1)
foreach(component dev runner)
    install(FILES cmake/debian/copyright ${PROJECT_BINARY_DIR}/debian/changelog.gz
        DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${camera_${component}_package} COMPONENT ${component})
endforeach()
install(FILES CHANGELOG.md Docs/Linking.md DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${camera_dev_package} COMPONENT dev)
if(CAMERA_RUNNER)
    install(FILES ${PROJECT_BINARY_DIR}/debian/camera-module-runner.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT runner)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL dev)
if(CAMERA_RUNNER)
    list(APPEND CPACK_COMPONENTS_ALL runner)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES OFF) # the preset's linker strips programs; the archive keeps its symbols
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PACKAGE_CONTACT "${CAMERA_PACKAGE_CONTACT}")
set(CPACK_PACKAGE_NAME camera-module)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SOURCE camera-module)
if(CAMERA_DEBIAN_ARCHITECTURE) # a cross toolchain says it
    set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE ${CAMERA_DEBIAN_ARCHITECTURE})
endif()

set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${camera_dev_package})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
if(CAMERA_PNG)
    set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS libpng-dev)
endif()
set(CPACK_DEBIAN_DEV_DESCRIPTION "cameras of a game runner, as a static library
Views that follow, turn, zoom, shake and look into space, with the same bits
on every device. This package has the headers, the archive, files for CMake
and pkg-config, and hosts to copy.")

set(CPACK_DEBIAN_RUNNER_PACKAGE_NAME ${camera_runner_package})
set(CPACK_DEBIAN_RUNNER_PACKAGE_SECTION devel)
set(runner_draws "It draws through OpenGL ES and writes the pictures as files.")
if(NOT RUNNER_DRAWING)
    set(runner_draws "This build plays and traces games, but makes no pictures.")
endif()
set(CPACK_DEBIAN_RUNNER_DESCRIPTION "plays Lua games through the camera module
A small real runner with a collector, saved games and three example games.
${runner_draws}")
# dpkg-shlibdeps knows the libraries of the machine that builds, not of another.
set(CPACK_DEBIAN_RUNNER_PACKAGE_SHLIBDEPS ON)
if(CMAKE_CROSSCOMPILING)
    set(CPACK_DEBIAN_RUNNER_PACKAGE_SHLIBDEPS OFF)
    set(CPACK_DEBIAN_RUNNER_PACKAGE_DEPENDS "libc6 (>= 2.34), libgcc-s1, libpng16-16, libpugixml1v5, libstdc++6 (>= 12), libzstd1, zlib1g")
endif()
# What is loaded while it runs, which no tool sees: SDL's window asks for libGL, and drawing for a driver.
if(RUNNER_DRAWING)
    set(CPACK_DEBIAN_RUNNER_PACKAGE_RECOMMENDS "libegl-mesa0, libgl1, libgl1-mesa-dri")
endif()
include(CPack)
