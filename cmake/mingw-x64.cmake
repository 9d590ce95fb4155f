# Toolchain: 64-bit Windows modules, built by Debian's MinGW-w64 and run by Wine.

set(ORV_ARCH x64)
set(ORV_TRIPLE x86_64-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR AMD64)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)
