# In-process servers.

set(ORV_OUT_DIR ${CMAKE_SOURCE_DIR}/out/${ORV_ARCH}
    CACHE PATH "Where the modules and programs for users go")
set(ORV_GENERATED_DIR ${CMAKE_BINARY_DIR}/generated)
configure_file(cmake/version.h.in ${ORV_GENERATED_DIR}/version.h)

# All modules, without tests and benchmarks.
add_custom_target(modules)

# orv_module(<name> SOURCES <file>... RC <file.rc> [IDL_TARGETS <target>...] [PROXIES <target>...]
#            [LIBS <library>...])
#
# Builds the in-process server <name>.dll into ORV_OUT_DIR, and adds the CTest fixture that registers
# it for the tests that name it.
#
#   SOURCES      define the entry points, by com/entry_points.h.
#   IDL_TARGETS  targets of orv_idl whose headers and identifiers the sources use.
#   PROXIES      those of them (made with PROXY) whose proxies and stubs this module carries. The
#                entry points reach them by the usual names under the prefix "Proxy".
#   RC           the resource script: type library, registry scripts, version (version.h). It finds
#                type libraries by bare name, and files in the current build folder.
#   LIBS         further libraries. ole32, oleaut32, rpcrt4 and uuid are always linked.
#
#   orv_module(orv_node SOURCES classes.cpp entry_points.cpp RC orv_node.rc
#              IDL_TARGETS node_idl PROXIES kinds_idl LIBS collections)
function(orv_module name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "RC" "SOURCES;IDL_TARGETS;PROXIES;LIBS")
  add_library(${name} MODULE ${arg_SOURCES} ${CMAKE_SOURCE_DIR}/com/exception_reserve.cpp
                             ${arg_RC} ${CMAKE_SOURCE_DIR}/com/module.def)
  set_target_properties(${name} PROPERTIES PREFIX "" LIBRARY_OUTPUT_DIRECTORY ${ORV_OUT_DIR})
  target_include_directories(
    ${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR} ${ORV_GENERATED_DIR})
  target_link_libraries(${name} PRIVATE ${arg_LIBS} ${arg_IDL_TARGETS} ole32 oleaut32 rpcrt4 uuid)
  orv_fix_image_base(${name})
  foreach(function malloc calloc realloc free __cxa_allocate_exception)
    target_link_options(${name} PRIVATE -Wl,--wrap=${function})  # com/exception_reserve.cpp
  endforeach()
  if(arg_PROXIES)
    orv_add_proxies(${name} "${arg_PROXIES}")
  endif()

  # The resource compiler does not report what a script includes.
  set(resources ${ORV_GENERATED_DIR}/version.h)
  foreach(target IN LISTS arg_IDL_TARGETS)
    get_target_property(outputs ${target} ORV_IDL_OUTPUTS)
    list(FILTER outputs INCLUDE REGEX "\\.tlb$")
    list(APPEND resources ${outputs})
    get_target_property(stem ${target} ORV_IDL_STEM)
    target_include_directories(${name} PRIVATE ${ORV_IDL_DIR}/${stem})
  endforeach()
  set_property(SOURCE ${arg_RC} APPEND PROPERTY OBJECT_DEPENDS "${resources}")

  orv_keep_debug_information_apart(${name})
  add_dependencies(modules ${name})
  add_test(NAME register.${name} COMMAND ${CMAKE_CROSSCOMPILING_EMULATOR} regsvr32 /s
                                         $<TARGET_FILE:${name}>)
  set_tests_properties(register.${name} PROPERTIES FIXTURES_SETUP registered.${name} RUN_SERIAL ON)
endfunction()

# A given base instead of one that the linker derives from the output's path. The loader moves the
# module anyway (ASLR); the two values are the platform's defaults.
function(orv_fix_image_base name)
  if(ORV_ARCH STREQUAL x64)
    target_link_options(${name} PRIVATE -Wl,--image-base,0x180000000)
  else()
    # Stdcall names carry their argument size (@12) in 32-bit objects, but not in the exports.
    target_link_options(${name} PRIVATE -Wl,--image-base,0x10000000 -Wl,--enable-stdcall-fixup)
  endif()
endfunction()

# Compiles the proxies and stubs of the IDL targets into the module `name`, as C: rpcproxy.h is not
# valid C++ in this toolchain.
function(orv_add_proxies name idl_targets)
  set(stems)
  set(sources)
  foreach(target IN LISTS idl_targets)
    get_target_property(stem ${target} ORV_IDL_STEM)
    list(APPEND stems ${stem})
    list(APPEND sources ${ORV_IDL_DIR}/${stem}/${stem}_p.c)
  endforeach()
  set(dlldata ${CMAKE_CURRENT_BINARY_DIR}/${name}_dlldata.c)
  add_custom_command(OUTPUT ${dlldata} COMMAND ${ORV_WIDL} --dlldata-only -o ${dlldata} ${stems}
                     VERBATIM)

  add_library(${name}_proxies OBJECT ${sources} ${dlldata})
  target_compile_options(${name}_proxies
                         PRIVATE -w -include ${CMAKE_SOURCE_DIR}/cmake/proxy_prelude.h)
  target_compile_definitions(${name}_proxies PRIVATE REGISTER_PROXY_DLL PROXY_DELEGATION
                                                     ENTRY_PREFIX=Proxy)
  target_link_libraries(${name}_proxies PRIVATE ${idl_targets})
  target_link_libraries(${name} PRIVATE ${name}_proxies)
endfunction()

# Leaves the module small, and its debug information (for addr2line) in <name>.debug in the build
# tree. Both tools would write the time of day into the file, but for SOURCE_DATE_EPOCH.
function(orv_keep_debug_information_apart name)
  set(reproducibly ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0)
  add_custom_command(
    TARGET ${name} POST_BUILD
    COMMAND ${reproducibly} ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${name}> ${name}.debug
    COMMAND ${reproducibly} ${CMAKE_STRIP} $<TARGET_FILE:${name}>
    VERBATIM)
endfunction()
