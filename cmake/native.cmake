# Preset native: what needs no Windows, built for the machine itself with clang's address and
# undefined-behaviour sanitizers, for ./dev fuzz. The modules have no such runtime.

include_directories(${CMAKE_SOURCE_DIR})
add_compile_options(-Wall -Wextra -O2 -g -fno-omit-frame-pointer
                    -fsanitize=address,undefined -fno-sanitize-recover=all)
add_link_options(-fsanitize=address,undefined)
# Code for the fuzzer counts its branches. Comparisons are not traced, which costs a third of the
# time: the words of decks are known. Limits that no deck reaches are low for the fuzzer's sake.
add_compile_options(-fsanitize-coverage=inline-8bit-counters,pc-table)
add_compile_definitions(FUZZING_BUILD_MODE_UNSAFE_FOR_PRODUCTION)

add_subdirectory(tools/content)
add_subdirectory(tools/deck)

# add_fuzzer(NAME FUNCTION): what tests/deck/fuzz.h declares, tried with broken decks.
function(add_fuzzer name function)
  add_executable(${name} tests/deck/fuzz.cpp tests/deck/fuzz_deck.cpp)
  target_compile_definitions(${name} PRIVATE ORV_FUZZED=${function})
  target_link_libraries(${name} PRIVATE tools_deck)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()
add_fuzzer(fuzz_reading try_reading)
add_fuzzer(fuzz_round_trip try_round_trip)
