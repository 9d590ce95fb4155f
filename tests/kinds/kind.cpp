#include "tests/kinds/kind.h"

#include "kinds/kinds.h"

std::vector<Kind> all_kinds() {
  const auto names = [](const auto& columns) {
    std::vector<std::wstring> result;
    for (const auto& column : columns) result.emplace_back(column.name);
    return result;
  };
#define KIND(name, collection, script) \
  {#name,                              \
   __uuidof(name),                     \
   __uuidof(I##name),                  \
   __uuidof(collection),               \
   __uuidof(I##collection),            \
   names(orv::C##name::columns())},
  return {FOR_EACH_KIND(KIND)};
#undef KIND
}
