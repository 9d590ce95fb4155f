# Tests, run by CTest in Wine, in the environment that cmake/wine describes. A test finds those
# modules registered that it names (CTest fixtures registered.<module>). The target with the test's
# name builds all that it needs.

enable_testing()

# Debian's package googletest carries the sources for such a cross-build.
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
foreach(library gtest gmock gmock_main)
  target_compile_options(${library} PRIVATE -w)
endforeach()

# What no single test may take longer than, in seconds.
set(ORV_TEST_TIMEOUT 600)

# orv_test(<name> SOURCES <file>... [LIBS <library>...] [MODULES <module>...])
#
# A GoogleTest (and GoogleMock) program, one CTest entry. A source with a main() of its own replaces
# GoogleTest's.
#
#   orv_test(records_test SOURCES records_test.cpp fake_host.cpp LIBS com host_idl MODULES orv_node)
function(orv_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBS;MODULES")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBS} GTest::gmock_main)
  if(WIN32)
    target_link_libraries(${name} PRIVATE ole32 oleaut32 uuid)
  endif()
  add_test(NAME ${name} COMMAND ${name})
  orv_test_needs(${name} MODULES ${arg_MODULES})
endfunction()

# orv_script_test(<name> SCRIPT <file.vbs or .js> PRINTS <file> [ARGS <argument>...]
#                 [FILES <file>...] [MODULES <module>...])
#
# A script for cscript, one CTest entry. It has the server, the model database and MODULES. It runs in
# a folder of its own, which holds copies of FILES and nothing else, and passes when it prints what
# the file PRINTS holds. Its exit code says nothing: Wine's cscript ends without a word and with 0 at
# an error that the script does not handle.
#
#   orv_script_test(for_each_test SCRIPT for_each_test.vbs PRINTS for_each_test.txt)
function(orv_script_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "SCRIPT;PRINTS" "ARGS;FILES;MODULES")
  cmake_path(ABSOLUTE_PATH arg_SCRIPT NORMALIZE OUTPUT_VARIABLE script)
  cmake_path(ABSOLUTE_PATH arg_PRINTS NORMALIZE OUTPUT_VARIABLE prints)
  list(TRANSFORM arg_FILES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  # A leading slash would make the path a switch of cscript.
  set(command ${CMAKE_CROSSCOMPILING_EMULATOR} cscript //nologo Z:${script} ${arg_ARGS})
  add_test(NAME ${name}
           COMMAND ${CMAKE_COMMAND} "-DCOMMAND=${command}" -DPRINTS=${prints} "-DFILES=${arg_FILES}"
                   -DFOLDER=${CMAKE_CURRENT_BINARY_DIR}/${name}
                   -P ${CMAKE_SOURCE_DIR}/cmake/check_output.cmake)
  orv_test_needs(${name} MODULES orv_node orv_modeldb ${arg_MODULES})
endfunction()

# orv_test_needs(<name> [MODULES <module>...] [TARGETS <target>...])
#
# What must be built for a test, and which modules registered besides.
function(orv_test_needs name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "MODULES;TARGETS")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ORV_TEST_TIMEOUT})
  if(NOT TARGET ${name})
    add_custom_target(${name})
  endif()
  foreach(module IN LISTS arg_MODULES)
    set_property(TEST ${name} APPEND PROPERTY FIXTURES_REQUIRED registered.${module})
  endforeach()
  if(arg_MODULES OR arg_TARGETS)
    add_dependencies(${name} ${arg_MODULES} ${arg_TARGETS})
  endif()
endfunction()
