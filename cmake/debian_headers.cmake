# Header-only libraries that Debian packages: <CLI/CLI.hpp> and <nlohmann/json.hpp>.
#
#   target_link_libraries(<target> PRIVATE orv_debian_headers)

# By links to their folders alone: the rest of /usr/include is the build machine's own system.
set(folder ${CMAKE_BINARY_DIR}/debian_headers)
file(MAKE_DIRECTORY ${folder})
foreach(library CLI nlohmann)
  file(CREATE_LINK /usr/include/${library} ${folder}/${library} SYMBOLIC)
endforeach()
add_library(orv_debian_headers INTERFACE)
target_include_directories(orv_debian_headers SYSTEM INTERFACE ${folder})
