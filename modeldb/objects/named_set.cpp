#include "modeldb/objects/named_set.h"

#include "modeldb/store/cell_value.h"

namespace modeldb {

std::vector<long> require_one_at_most(Database& database, const Kind& kind,
                                      std::wstring_view name) {
  if (trimmed(name).empty()) {
    fail(kInvalidArgument, L"No name was passed. Pass the name of the " + kind.object + L".");
  }
  // Other programs would take it for the end.
  if (const auto nul = name.find(L'\0'); nul != std::wstring_view::npos) {
    fail(kInvalidArgument, L"The name of the " + kind.object + L" has a NUL character behind " +
                               quoted(name.substr(0, nul)) + L". Take it out.");
  }
  std::vector<long> numbers;
  std::wstring list;
  const auto rows = database.query(L"SELECT " + kind.key + L" FROM " + kind.table +
                                       L" WHERE Description = ? ORDER BY " + kind.key,
                                   name);
  while (rows->step()) {
    numbers.push_back(static_cast<long>(rows->integer(0)));
    list += (list.empty() ? L"" : L", ") + std::to_wstring(numbers.back());
  }
  if (numbers.size() > 1) {
    fail(kIllegalOperation, L"The model has several " + kind.table + L" of the name " +
                                quoted(name) + L": " + list +
                                L". Give them names of their own, or take one by its ID.");
  }
  return numbers;
}

}  // namespace modeldb
