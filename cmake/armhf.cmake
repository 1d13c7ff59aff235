# Toolchain for 32-bit ARM Linux (Debian's armhf), the module's main target. Docs/Targets.md explains the flags.
set(CMAKE_SYSTEM_PROCESSOR armhf)
set(CAMERA_TRIPLE arm-linux-gnueabihf)
set(CAMERA_DEBIAN_ARCHITECTURE armhf)
set(CAMERA_EMULATOR qemu-arm)
set(CAMERA_TARGET_FLAGS "-march=armv7-a+fp -mfpu=vfpv3-d16 -mfloat-abi=hard -Wno-psabi") # silences notes about the ABI of GCC before 7.1
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
