# Toolchain: 32-bit Windows modules, built by Debian's MinGW-w64 and run by 32-bit Wine.

set(ORV_ARCH x86)
set(ORV_TRIPLE i686-w64-mingw32)
set(CMAKE_SYSTEM_PROCESSOR X86)
include(${CMAKE_CURRENT_LIST_DIR}/mingw.cmake)

# Numbers are computed in SSE's registers, as 64-bit modules do: the x87's hold more digits, or fewer
# where a host has set it so, and the two widths would then find different things in one model.
# GCC realigns the stack of every function that needs it, since callers keep four bytes only.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
