# Registration scripts: one resource of type REGISTRY per creatable class, all from one template,
# com/class.rgs.in. Identifiers are read from the interface definitions, where they stand once.

# orv_registry_scripts(RC <file.rc> PROGID <prefix> IDL <file.idl> CLASSES <"Name number">...
#                      [IDENTIFIERS <file.idl>] [THREADING <model>])
#
# Writes the scripts and <stem of RC>_registry.rc, which lists them as resources under their
# numbers; the resource script includes it by that name.
#
#   PROGID       what a class's ProgID begins with: Orv_Node gives Orv_Node.NodalForce.1.
#   IDL          declares the type library, whose uuid stands first in its attributes, and a line
#                CREATABLE(<Name>, <identifier>…) for each class.
#   IDENTIFIERS  holds "#define <NAME> <identifier>" for classes whose line gives such a name.
#   THREADING    the classes' threading model; Apartment without it.
#
#   orv_registry_scripts(RC orv_node.rc PROGID Orv_Node IDL orv_node.idl
#                        CLASSES "NodalForce 103" "NodalForces 104")
function(orv_registry_scripts)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "RC;PROGID;IDL;IDENTIFIERS;THREADING" "CLASSES")
  set(threading Apartment)
  if(arg_THREADING)
    set(threading ${arg_THREADING})
  endif()
  orv_read_definitions(definitions ${arg_IDL} ${arg_IDENTIFIERS})
  orv_library_identifier(libid "${definitions}")

  set(progid ${arg_PROGID})
  set(scripts)
  set(list)
  foreach(entry IN LISTS arg_CLASSES)
    string(REPLACE " " ";" entry ${entry})
    list(GET entry 0 class)
    list(GET entry 1 number)
    orv_class_identifier(clsid ${class} "${definitions}")
    set(script ${CMAKE_CURRENT_BINARY_DIR}/registry/${class}.rgs)
    configure_file(${CMAKE_SOURCE_DIR}/com/class.rgs.in ${script} @ONLY NEWLINE_STYLE CRLF)
    list(APPEND scripts ${script})
    string(APPEND list "${number} REGISTRY \"registry/${class}.rgs\"\n")
  endforeach()

  cmake_path(GET arg_RC STEM stem)
  set(include ${CMAKE_CURRENT_BINARY_DIR}/${stem}_registry.rc)
  file(CONFIGURE OUTPUT ${include} CONTENT "${list}" @ONLY)
  # The resource compiler does not report what a script includes.
  set_property(SOURCE ${arg_RC} APPEND PROPERTY OBJECT_DEPENDS "${scripts};${include}")
endfunction()

# orv_classes_of_kinds(<variable> <kinds.def>)
#
# The classes of the list of kinds, as CLASSES above wants them: a line KIND(NodalForce,
# NodalForces, 103) gives "NodalForce 103" and "NodalForces 104".
function(orv_classes_of_kinds variable file)
  orv_read_definitions(kinds ${file})
  string(REGEX MATCHALL "KIND\\([^)]*\\)" kinds "${kinds}")
  set(classes)
  foreach(kind IN LISTS kinds)
    if(kind MATCHES "\\( *([A-Za-z]+) *, *([A-Za-z]+) *, *([0-9]+) *\\)")
      math(EXPR collection_number "${CMAKE_MATCH_3} + 1")
      list(APPEND classes "${CMAKE_MATCH_1} ${CMAKE_MATCH_3}"
                          "${CMAKE_MATCH_2} ${collection_number}")
    endif()
  endforeach()
  set(${variable} ${classes} PARENT_SCOPE)
endfunction()

# orv_classes(<variable> <header>)
#
# The classes of a list FOR_EACH_CLASS, as CLASSES above wants them: CLASS(Vertex, 102) gives
# "Vertex 102".
function(orv_classes variable file)
  orv_read_definitions(list ${file})
  string(REGEX MATCHALL "[A-Z]+\\([A-Za-z]+, [0-9]+\\)" list "${list}")
  list(TRANSFORM list REPLACE "[A-Z]+\\(([A-Za-z]+), ([0-9]+)\\)" "\\1 \\2")
  set(${variable} ${list} PARENT_SCOPE)
endfunction()

# The text of some files, read anew whenever one of them changes. The interfaces and classes that a
# line KIND(<Name>,<Names>, <four identifiers>…) stands for are written out.
function(orv_read_definitions variable)
  set(text)
  foreach(file IN LISTS ARGN)
    cmake_path(ABSOLUTE_PATH file NORMALIZE)
    file(READ ${file} content)
    string(APPEND text "${content}")
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${file})
  endforeach()
  set(id "[ \n]*([0-9A-F-]+)")
  string(REGEX REPLACE "KIND\\(([A-Za-z]+),([A-Za-z]+),${id},${id},${id},${id}"
         "DUAL_INTERFACE(\\3, HELP(I\\1 Interface) CREATABLE(\\1, \\4) \
DUAL_INTERFACE(\\5, HELP(I\\2 Interface) CREATABLE(\\2, \\6) "
         text "${text}")
  set(${variable} "${text}" PARENT_SCOPE)
endfunction()

function(orv_library_identifier variable definitions)
  if(NOT definitions MATCHES "\\[uuid\\(([0-9A-F-]+)\\)[^]]*\\][ \n]*library ")
    message(FATAL_ERROR "No definition declares a library")
  endif()
  set(${variable} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

function(orv_class_identifier variable class definitions)
  if(NOT definitions MATCHES "CREATABLE\\(${class}, *([A-Za-z0-9_-]+)")
    message(FATAL_ERROR "No definition creates the class ${class}")
  endif()
  set(identifier ${CMAKE_MATCH_1})
  if(definitions MATCHES "#define ${identifier} +([0-9A-F-]+)")
    set(identifier ${CMAKE_MATCH_1})
  endif()
  set(${variable} ${identifier} PARENT_SCOPE)
endfunction()
