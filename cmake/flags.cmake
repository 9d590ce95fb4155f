# Compiler and linker options of everything that is built here.

# -g1 is enough for a backtrace with file and line, and halves the size of the objects.
foreach(lang C CXX)
  set(CMAKE_${lang}_FLAGS_RELWITHDEBINFO "-O2 -g1 -DNDEBUG")
endforeach()

add_compile_definitions(
  $<$<COMPILE_LANGUAGE:C,CXX>:UNICODE> $<$<COMPILE_LANGUAGE:C,CXX>:_UNICODE>
  # Windows 7, the oldest system that the modules load on.
  $<$<COMPILE_LANGUAGE:C,CXX>:_WIN32_WINNT=0x0601>
  $<$<COMPILE_LANGUAGE:C,CXX>:NOMINMAX>)

# The prefix maps keep the place of the checkout out of the objects, so that two checkouts build
# the same bytes.
add_compile_options(
  $<$<COMPILE_LANGUAGE:C,CXX>:-Wall> $<$<COMPILE_LANGUAGE:C,CXX>:-Wextra>
  $<$<COMPILE_LANGUAGE:C,CXX>:-fstack-protector-strong>
  $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=>
  $<$<COMPILE_LANGUAGE:C,CXX>:-ffile-prefix-map=${CMAKE_BINARY_DIR}=build>)

if(NOT WIN32)
  return()
endif()

# -static: GCC's runtime goes into the file, which then imports system DLLs only.
add_link_options(-static -fstack-protector-strong
                 -Wl,--no-insert-timestamp -Wl,--dynamicbase -Wl,--nxcompat)
if(ORV_ARCH STREQUAL x64)
  add_link_options(-Wl,--high-entropy-va)
endif()
