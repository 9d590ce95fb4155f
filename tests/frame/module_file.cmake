# The modules as files: what they import and export, and how they are hardened. Run as:
#
#   cmake -DOBJDUMP=<objdump> -DWIDTH=x64|x86 -DFOLDER=<out folder> -P module_file.cmake

set(system "advapi32|gdi32|kernel32|msvcrt|odbc32|ole32|oleaut32|rpcrt4|shell32|user32|version")
set(flags DYNAMIC_BASE NX_COMPAT)
if(WIDTH STREQUAL x64)
  list(APPEND flags HIGH_ENTROPY_VA)
endif()

file(GLOB modules ${FOLDER}/orv_*.dll)
if(NOT modules)
  message(FATAL_ERROR "There is no module in ${FOLDER}")
endif()
foreach(module IN LISTS modules)
  execute_process(COMMAND ${OBJDUMP} -p ${module} OUTPUT_VARIABLE text COMMAND_ERROR_IS_FATAL ANY)
  string(TOLOWER "${text}" lower)
  string(REGEX MATCHALL "dll name: [^\n\r ]+" imports "${lower}")
  list(FILTER imports EXCLUDE REGEX "^dll name: (${system})\\.dll$")
  if(imports)
    message(SEND_ERROR "${module} imports what a Windows need not have: ${imports}")
  endif()

  string(REGEX MATCH "Name Pointer\\] Table\n(([^\n]+\n)+)" exports "${text}")
  string(REGEX REPLACE "[^\n]*\\] ([^\n]*)\n" "\\1 " exports "${CMAKE_MATCH_1}")
  if(NOT exports STREQUAL "DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer ")
    message(SEND_ERROR "${module} exports ${exports}")
  endif()

  foreach(flag IN LISTS flags)
    if(NOT text MATCHES "[ \t]${flag}")
      message(SEND_ERROR "${module} is not ${flag}")
    endif()
  endforeach()
  # Without them the module could not be moved, whatever the flag says.
  if(NOT text MATCHES "Entry 5 [0-9a-f]* 0*[1-9a-f][0-9a-f]* Base Relocation")
    message(SEND_ERROR "${module} has no relocations")
  endif()
endforeach()
