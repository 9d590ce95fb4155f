# Assembly manifests: what registration writes into the registry, as a file beside the module. A
# program whose own manifest names that assembly uses the module without registration.

include(${CMAKE_CURRENT_LIST_DIR}/registry_scripts.cmake)

# orv_assembly_manifest(<module> PROGID <prefix> IDL <file.idl> CLASSES <"Name number">...
#                       [IDENTIFIERS <file.idl>] [THREADING <model>] [INTERFACES <file.idl>...])
#
# Writes <module>.sxs.manifest beside the module. The assembly has a name of its own, <module>.sxs,
# since the platform would look for an assembly called <module> inside <module>.dll.
#
#   PROGID, IDL, CLASSES, IDENTIFIERS, THREADING   as in orv_registry_scripts.
#   INTERFACES  the files whose interfaces the module marshals, in the order of its PROXIES. Without
#               it, IDL alone.
#
#   orv_assembly_manifest(orv_node PROGID Orv_Node IDL orv_node.idl CLASSES ${classes})
function(orv_assembly_manifest module)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "PROGID;IDL;IDENTIFIERS;THREADING" "CLASSES;INTERFACES")
  if(NOT arg_THREADING)
    set(arg_THREADING Apartment)
  endif()
  if(NOT arg_INTERFACES)
    set(arg_INTERFACES ${arg_IDL})
  endif()
  orv_read_definitions(definitions ${arg_IDL} ${arg_IDENTIFIERS})
  orv_library_identifier(libid "${definitions}")
  orv_manifest_classes(classes "${arg_CLASSES}" ${arg_PROGID} ${libid} ${arg_THREADING}
                       "${definitions}")
  orv_read_definitions(definitions ${arg_INTERFACES})
  orv_manifest_interfaces(interfaces proxy_clsid ${libid} "${definitions}")

  if(ORV_ARCH STREQUAL x64)
    set(architecture amd64)
  else()
    set(architecture x86)
  endif()
  set(manifest ${CMAKE_CURRENT_BINARY_DIR}/${module}.sxs.manifest)
  configure_file(${CMAKE_SOURCE_DIR}/cmake/assembly.manifest.in ${manifest} @ONLY)
  # The module is linked anew, and the manifest with it put in its place, when either has changed.
  set_property(TARGET ${module} APPEND PROPERTY LINK_DEPENDS ${manifest})
  add_custom_command(TARGET ${module} POST_BUILD
                     COMMAND ${CMAKE_COMMAND} -E copy ${manifest} ${ORV_OUT_DIR} VERBATIM)
endfunction()

function(orv_manifest_classes variable classes progid libid threading definitions)
  set(elements)
  foreach(entry IN LISTS classes)
    string(REGEX REPLACE " .*" "" class ${entry})
    orv_class_identifier(clsid ${class} "${definitions}")
    string(APPEND elements
           "    <comClass clsid=\"{${clsid}}\" description=\"${class} Class\"\n"
           "              progid=\"${progid}.${class}.1\" threadingModel=\"${threading}\"\n"
           "              tlbid=\"{${libid}}\">\n"
           "      <progid>${progid}.${class}</progid>\n"
           "    </comClass>\n")
  endforeach()
  set(${variable} "${elements}" PARENT_SCOPE)
endfunction()

# The marshalling code is a class too, under the identifier of the first interface.
function(orv_manifest_interfaces variable proxy_clsid_variable libid definitions)
  string(REGEX MATCHALL "DUAL_INTERFACE\\([0-9A-F-]+, HELP\\([A-Za-z]+" declarations
         "${definitions}")
  set(elements)
  set(proxy_clsid)
  foreach(declaration IN LISTS declarations)
    string(REGEX MATCH "\\(([0-9A-F-]+), HELP\\((.+)" matched ${declaration})
    if(NOT proxy_clsid)
      set(proxy_clsid ${CMAKE_MATCH_1})
    endif()
    string(APPEND elements
           "  <comInterfaceExternalProxyStub name=\"${CMAKE_MATCH_2}\"\n"
           "      iid=\"{${CMAKE_MATCH_1}}\" tlbid=\"{${libid}}\"\n"
           "      proxyStubClsid32=\"{${proxy_clsid}}\"/>\n")
  endforeach()
  set(${variable} "${elements}" PARENT_SCOPE)
  set(${proxy_clsid_variable} ${proxy_clsid} PARENT_SCOPE)
endfunction()
