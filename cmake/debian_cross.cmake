# The common part of the cross toolchains. A toolchain file sets CAMERA_TRIPLE and CAMERA_EMULATOR, then includes this.
#
# The compiler with its C and C++ libraries comes from Debian's cross packages; all other libraries come from
# CAMERA_SYSROOT, which Tools/sysroot.sh fills. It is not passed as --sysroot, because the compiler must find its own libc.
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

# Some of Debian's headers include others relative to the folder of the target's triple.
set(CMAKE_CXX_STANDARD_INCLUDE_DIRECTORIES "${CAMERA_SYSROOT}/usr/include/${CAMERA_TRIPLE}")
set(CMAKE_CXX_FLAGS_INIT "${CAMERA_TARGET_FLAGS}")
set(CMAKE_C_FLAGS_INIT "${CAMERA_TARGET_FLAGS}")

# Where indirect dependencies are found: at link time, and by programs under the emulator.
set(library_path "${CAMERA_SYSROOT}/usr/lib/${CAMERA_TRIPLE}:${CAMERA_SYSROOT}/lib/${CAMERA_TRIPLE}")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${library_path}")
set(CMAKE_CROSSCOMPILING_EMULATOR "${CAMERA_EMULATOR};-L;/usr/${CAMERA_TRIPLE};-E;LD_LIBRARY_PATH=${library_path}")
