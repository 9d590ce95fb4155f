# Rooms: the folders of the tree that are built into a module, each a target with declared
# dependencies. A header is included as "room/header.h", and is found only when its room is one of
# those that the including room uses.

set(ORV_ROOMS_DIR ${CMAKE_BINARY_DIR}/rooms)

# orv_room_folder(<variable> <room>)
#
# An include folder in which this room is all that there is.
function(orv_room_folder variable room)
  string(REPLACE / _ name ${room})
  set(folder ${ORV_ROOMS_DIR}/${name})
  cmake_path(GET room PARENT_PATH house)
  file(MAKE_DIRECTORY ${folder}/${house})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${room} ${folder}/${room} SYMBOLIC)
  set(${variable} ${folder} PARENT_SCOPE)
endfunction()

# orv_room(<room> [SOURCES <file>...] [USES <room or library>...])
#
# The folder of this name as a static library, of a room within a room under the name house_room. Its
# headers are compiled as well, apart from whoever
# includes them: what they include must be there.
#
#   orv_room(records SOURCES host.cpp row_reader.cpp USES host com)
function(orv_room room)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;USES")
  orv_room_folder(folder ${room})
  string(REPLACE / _ room ${room})
  file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR} *.h)
  list(TRANSFORM headers REPLACE "(.+)" "#include \"\\1\"\n")
  string(JOIN "" headers ${headers})
  file(CONFIGURE OUTPUT ${room}_headers.cpp CONTENT "${headers}" @ONLY)
  add_library(${room} STATIC ${arg_SOURCES} ${CMAKE_CURRENT_BINARY_DIR}/${room}_headers.cpp)
  target_include_directories(${room} PUBLIC ${folder})
  target_link_libraries(${room} PUBLIC ${arg_USES})
endfunction()
