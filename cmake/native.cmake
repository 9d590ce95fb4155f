# Preset native: what needs no Windows, built for the machine itself with clang's address and
# undefined-behaviour sanitizers, for ./dev fuzz. The modules have no such runtime.

include_directories(${CMAKE_SOURCE_DIR})
add_compile_options(-Wall -Wextra -O1 -g -fno-omit-frame-pointer
                    -fsanitize=address,undefined -fno-sanitize-recover=all)
add_link_options(-fsanitize=address,undefined)
# Code for the fuzzer counts its branches; limits that no deck reaches are low for its sake.
add_compile_options(-fsanitize=fuzzer-no-link)
add_compile_definitions(FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)

add_subdirectory(tools/deck)

add_executable(deck_fuzz tests/deck/fuzz.cpp tests/deck/fuzz_deck.cpp)
target_link_libraries(deck_fuzz PRIVATE tools_deck)
target_link_options(deck_fuzz PRIVATE -fsanitize=fuzzer)
