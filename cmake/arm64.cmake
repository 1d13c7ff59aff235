# Toolchain for 64-bit ARM Linux (Debian's arm64).
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CAMERA_TRIPLE aarch64-linux-gnu)
set(CAMERA_DEBIAN_ARCHITECTURE arm64)
set(CAMERA_EMULATOR qemu-aarch64)
set(CAMERA_TARGET_FLAGS "")
include(${CMAKE_CURRENT_LIST_DIR}/debian_cross.cmake)
