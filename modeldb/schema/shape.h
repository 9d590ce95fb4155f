#pragma once

#include <map>
#include <optional>
#include <string>

#include "modeldb/engine/database.h"
#include "modeldb/schema/definition.h"

namespace modeldb {

/// What a file has under a name: a table, view or index, and the text that made it.
struct SchemaEntry {
  std::wstring type;
  std::wstring sql;
};

struct NameOrder {
  bool operator()(const std::wstring& a, const std::wstring& b) const;
};
using SchemaEntries = std::map<std::wstring, SchemaEntry, NameOrder>;

/// Everything that the file has, by name.
SchemaEntries read_schema(Database& database);

/// Whether a table in a file is as the kinds need it. Other programs may reshape tables, and SQLite
/// would then lose or misnumber rows without a word.
enum class Shape {
  kRight,
  kWithoutLinkRule,  ///< right, but that nothing holds a link to its set
};

/// Compares a table with its definition. More columns than the kinds need are fine when they allow
/// NULL. Raises kCannotOpenFile, with a sentence that names the table and what is wrong with it.
Shape require_shape(Database& database, const TableDefinition& needed, const SchemaEntry& found);

/// Raises kCannotOpenFile: the link table lacks the rule that holds a link to its set, which the
/// version of the file promises.
[[noreturn]] void fail_without_link_rule(const Database& database, const TableDefinition& links);

}  // namespace modeldb
