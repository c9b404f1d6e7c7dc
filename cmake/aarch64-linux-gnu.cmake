# Cross-build for the device's CPU (arm64, where char is unsigned) with Debian's aarch64 g++;
# CTest runs the results under qemu-aarch64 with the aarch64 libraries as their root.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_FIND_ROOT_PATH /usr/aarch64-linux-gnu)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
find_program(OPTOQUILL_QEMU qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${OPTOQUILL_QEMU} -L /usr/aarch64-linux-gnu)
