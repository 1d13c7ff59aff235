# What the cross toolchains share. A toolchain sets CAMERA_TRIPLE and CAMERA_EMULATOR, then includes this.
#
# The compiler and its C and C++ libraries are Debian's cross packages; every other library comes from CAMERA_SYSROOT,
# which Tools/sysroot.sh fills. That folder is no --sysroot: the compiler keeps finding its own libc.
set(CAMERA_SYSROOT "${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-${CMAKE_SYSTEM_PROCESSOR}" CACHE PATH
    "The target's libraries")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CAMERA_SYSROOT)
get_filename_component(CAMERA_SYSROOT "${CAMERA_SYSROOT}" ABSOLUTE)
if(NOT EXISTS "${CAMERA_SYSROOT}/usr/lib/${CAMERA_TRIPLE}")
    message(FATAL_ERROR "no libraries for ${CAMERA_TRIPLE} in ${CAMERA_SYSROOT}: fetch them with Tools/sysroot.sh")
endif()

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_CXX_COMPILER ${CAMERA_TRIPLE}-g++)
set(CMAKE_C_COMPILER ${CAMERA_TRIPLE}-gcc)
set(CMAKE_LIBRARY_ARCHITECTURE ${CAMERA_TRIPLE})

set(CMAKE_FIND_ROOT_PATH "${CAMERA_SYSROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${CAMERA_SYSROOT}")
set(ENV{PKG_CONFIG_LIBDIR} "${CAMERA_SYSROOT}/usr/lib/${CAMERA_TRIPLE}/pkgconfig:${CAMERA_SYSROOT}/usr/share/pkgconfig")

# Some headers include others by a path below the target's own folder.
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES "${CAMERA_SYSROOT}/usr/include/${CAMERA_TRIPLE}")
set(CMAKE_CXX_FLAGS_INIT "${CAMERA_TARGET_FLAGS}")
set(CMAKE_C_FLAGS_INIT "${CAMERA_TARGET_FLAGS}")

# The libraries' own libraries: for the linker, and for the programs under the emulator.
set(library_path "${CAMERA_SYSROOT}/usr/lib/${CAMERA_TRIPLE}:${CAMERA_SYSROOT}/lib/${CAMERA_TRIPLE}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${library_path}")
set(CMAKE_CROSSCOMPILING_EMULATOR "${CAMERA_EMULATOR};-L;/usr/${CAMERA_TRIPLE};-E;LD_LIBRARY_PATH=${library_path}")
