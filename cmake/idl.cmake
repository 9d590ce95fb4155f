# Interface definitions, compiled by widl. What it makes of a file lies in a folder of its own, so that
# a header, <stem>.h, is found by those alone who link its target.

set(ORV_IDL_DIR ${CMAKE_BINARY_DIR}/idl)

find_program(ORV_WIDL ${ORV_TRIPLE}-widl REQUIRED)
find_path(ORV_PLATFORM_IDL_DIR oaidl.idl REQUIRED NO_CMAKE_FIND_ROOT_PATH
          PATHS /usr/include/wine/wine/windows /usr/include/wine/windows)
# Wine keeps stdole2.tlb, the same for both widths, beside its modules.
file(GLOB wine_module_dirs /usr/lib/*/wine/*-windows)
find_path(ORV_PLATFORM_TYPELIB_DIR stdole2.tlb REQUIRED NO_CMAKE_FIND_ROOT_PATH
          PATHS ${wine_module_dirs})

# orv_idl(<target> IDL <file.idl> [TYPELIB] [PROXY] [DEPENDS <target or file>...])
#
# Makes the INTERFACE library <target>. Linking it gives the header <stem>.h and the definitions of
# the identifiers (IID_…, CLSID_…, LIBID_…); __uuidof works too.
#
#   TYPELIB  also makes <stem>.tlb, for the module's resource script: 1 TYPELIB "<stem>.tlb"
#   PROXY    also makes the proxies and stubs, which orv_module(… PROXIES <target>) compiles in.
#   DEPENDS  what the file imports or includes: targets of orv_idl, whose headers come along, or
#            files. The import itself names no folder: import "contract.idl";
#
#   orv_idl(host_idl IDL contract.idl PROXY DEPENDS orv_ado)
#   orv_idl(node_idl IDL orv_node.idl TYPELIB PROXY DEPENDS host_idl)
function(orv_idl target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "TYPELIB;PROXY" "IDL" "DEPENDS")
  cmake_path(ABSOLUTE_PATH arg_IDL NORMALIZE OUTPUT_VARIABLE idl)
  cmake_path(GET idl STEM stem)
  set(folder_of_output ${ORV_IDL_DIR}/${stem})
  file(MAKE_DIRECTORY ${folder_of_output})
  set(out ${folder_of_output}/${stem})

  set(imported_targets)
  set(files ${idl})
  set(folders ${CMAKE_SOURCE_DIR})
  foreach(item IN LISTS arg_DEPENDS)
    if(TARGET ${item})
      list(APPEND imported_targets ${item})
      get_target_property(imported_files ${item} ORV_IDL_FILES)
      list(APPEND files ${imported_files})
    else()
      cmake_path(ABSOLUTE_PATH item NORMALIZE)
      list(APPEND files ${item})
    endif()
  endforeach()
  foreach(file IN LISTS files)
    cmake_path(GET file PARENT_PATH folder)
    list(APPEND folders ${folder})
  endforeach()
  list(APPEND folders ${ORV_PLATFORM_IDL_DIR})
  list(REMOVE_DUPLICATES folders)
  list(TRANSFORM folders PREPEND -I)

  set(emit -h -u)
  set(outputs ${out}.h ${out}_i.c)
  if(arg_TYPELIB)
    list(APPEND emit -t)
    list(APPEND outputs ${out}.tlb)
  endif()
  if(arg_PROXY)
    list(APPEND emit -Oicf -p)
    list(APPEND outputs ${out}_p.c)
  endif()
  add_custom_command(
    OUTPUT ${outputs}
    # A type library carries the time of its making; a fixed one makes equal sources equal bytes.
    COMMAND ${CMAKE_COMMAND} -E env WIDL_TIME_OVERRIDE=0 TZ=UTC
            ${ORV_WIDL} ${emit} ${folders} -L${ORV_PLATFORM_TYPELIB_DIR} ${idl}
    DEPENDS ${files}
    WORKING_DIRECTORY ${folder_of_output}
    COMMENT "Compiling interfaces ${stem}.idl"
    VERBATIM)
  add_custom_target(${target}_outputs DEPENDS ${outputs})

  add_library(${target}_identifiers STATIC ${out}_i.c)
  target_compile_options(${target}_identifiers PRIVATE -w)
  add_dependencies(${target}_identifiers ${target}_outputs)

  add_library(${target} INTERFACE)
  add_dependencies(${target} ${target}_outputs)
  target_include_directories(${target} SYSTEM INTERFACE ${folder_of_output})
  target_link_libraries(${target} INTERFACE ${imported_targets} ${target}_identifiers)
  set_target_properties(${target} PROPERTIES ORV_IDL_STEM ${stem} ORV_IDL_FILES "${files}"
                                             ORV_IDL_OUTPUTS "${outputs}")
endfunction()

# ADO's interfaces, as Wine defines them: <msado15_backcompat.h>. The toolchain's own adoint.h is
# not valid C++.
orv_idl(orv_ado IDL ${ORV_PLATFORM_IDL_DIR}/msado15_backcompat.idl)
