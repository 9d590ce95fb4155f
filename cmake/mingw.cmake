# What the two MinGW toolchain files share. The including file has set ORV_ARCH (x64, x86) and
# ORV_TRIPLE. The posix variant of GCC is needed: the win32 one has no <mutex>.

set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_C_COMPILER ${ORV_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${ORV_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${ORV_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${ORV_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# CTest puts this in front of every program that the build made.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/wine;${ORV_ARCH})
