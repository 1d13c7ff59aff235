# 32-bit ARM Linux, as Debian's armhf: the module's home. Docs/Targets.md tells why these flags.
set(CMAKE_SYSTEM_PROCESSOR armhf)
set(CAMERA_TRIPLE arm-linux-gnueabihf)
set(CAMERA_EMULATOR qemu-arm)
set(CAMERA_TARGET_FLAGS "-march=armv7-a+fp -mfpu=vfpv3-d16 -mfloat-abi=hard -Wno-psabi") # no notes about old GCCs
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
