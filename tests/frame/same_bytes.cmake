# Builds the modules a second time, in a folder beside the first build, and compares every file that
# users get with the first. Run as:
#
#   cmake -DARCH=x64 -DSOURCE=<checkout> -DFIRST=<out folder> -DTREE=<folder> -P same_bytes.cmake
#
# The second tree is kept: the next run builds only what has changed.

execute_process(COMMAND ${CMAKE_COMMAND} --preset ${ARCH} -B ${TREE} -DORV_OUT_DIR=${TREE}/out
                WORKING_DIRECTORY ${SOURCE} OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
execute_process(COMMAND ${CMAKE_COMMAND} --build ${TREE} --target orv_node orv_modeldb
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)

file(GLOB files RELATIVE ${TREE}/out ${TREE}/out/*)
if(NOT files)
  message(FATAL_ERROR "The second build made nothing")
endif()
foreach(name IN LISTS files)
  file(SHA256 ${FIRST}/${name} first)
  file(SHA256 ${TREE}/out/${name} second)
  if(NOT first STREQUAL second)
    message(SEND_ERROR "${name} differs from one build to the other")
  endif()
  message(STATUS "${name}: ${second}")
endforeach()
