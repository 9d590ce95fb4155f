# Runs COMMAND in the folder FOLDER, which holds copies of FILES and nothing else, and fails unless
# it prints what the file PRINTS holds.

file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
file(COPY ${FILES} DESTINATION ${FOLDER})
execute_process(COMMAND ${COMMAND} WORKING_DIRECTORY ${FOLDER} OUTPUT_VARIABLE printed)
string(REPLACE "\r\n" "\n" printed "${printed}")
file(READ ${PRINTS} expected)
if(NOT printed STREQUAL expected)
  message("${printed}")
  message(FATAL_ERROR "This should have been the text of ${PRINTS}.")
endif()
