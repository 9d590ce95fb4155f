# SQLite, as a static library.
#
#   target_link_libraries(<target> PRIVATE orv_sqlite)      #include <sqlite3.h>

# One amalgamation serves both widths.
cmake_path(SET ORV_SQLITE_DIR NORMALIZE ${CMAKE_BINARY_DIR}/../sqlite)
add_custom_command(
  OUTPUT ${ORV_SQLITE_DIR}/sqlite3.c ${ORV_SQLITE_DIR}/sqlite3.h
  COMMAND ${CMAKE_SOURCE_DIR}/cmake/fetch-sqlite ${ORV_SQLITE_DIR}
  DEPENDS ${CMAKE_SOURCE_DIR}/cmake/fetch-sqlite ${CMAKE_SOURCE_DIR}/cmake/sqlite.patch
  COMMENT "Fetching SQLite"
  VERBATIM)
add_custom_target(orv_sqlite_sources DEPENDS ${ORV_SQLITE_DIR}/sqlite3.c)

add_library(orv_sqlite STATIC EXCLUDE_FROM_ALL ${ORV_SQLITE_DIR}/sqlite3.c)
add_dependencies(orv_sqlite orv_sqlite_sources)
target_include_directories(orv_sqlite SYSTEM INTERFACE ${ORV_SQLITE_DIR})
target_compile_options(orv_sqlite PRIVATE -w)
# Tells of each row before it changes, for what can be undone.
target_compile_definitions(orv_sqlite PUBLIC SQLITE_ENABLE_PREUPDATE_HOOK)
# SQLite's own recommendations, but for threads: a host may call from several.
target_compile_definitions(
  orv_sqlite
  PRIVATE SQLITE_DQS=0 # "x" is a name, never a text
          SQLITE_THREADSAFE=1
          SQLITE_DEFAULT_MEMSTATUS=0
          SQLITE_ENABLE_COLUMN_METADATA # a column tells its table, for Table.Column
          SQLITE_ENABLE_MATH_FUNCTIONS
          SQLITE_LIKE_DOESNT_MATCH_BLOBS
          SQLITE_OMIT_DEPRECATED
          SQLITE_OMIT_LOAD_EXTENSION
          SQLITE_OMIT_SHARED_CACHE
          # A page is written where the file's pointer was put. With the place beside the call, Wine
          # asks its server twice for each page, which made up a tenth of a save.
          SQLITE_WIN32_NO_OVERLAPPED
          # What a savepoint keeps in memory, in one block; beyond it a file is used, which costs
          # fifty times as much. A larger block is slow to allocate.
          SQLITE_STMTJRNL_SPILL=98304)
