# Toolchain: 32-bit Windows modules, built by Debian's MinGW-w64 and run by 32-bit Wine.

set(ORV_ARCH x86)
set(ORV_TRIPLE i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR X86)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
