#include "modeldb/engine/engine.h"

#include "modeldb/base/failure.h"

namespace modeldb {

void fail_as_closed(std::wstring_view location) {
  fail(kObjectClosed, L"The model database " + quoted(location) +
                          L" is closed. Open it again, and take connections and recordsets from "
                          L"it anew.");
}

void fail_as_lost(std::wstring_view location) {
  fail(kInvalidTransaction,
       L"The transaction in the model database " + quoted(location) +
           L" was undone after an earlier failure, and nothing of it is saved. Roll it back if you "
           L"have not ended it yet; then remove the cause, and try the whole of it again.");
}

void fail_as_used_up(std::wstring_view table) {
  fail(kIntegrityViolation, L"The table " + std::wstring(table) +
                                L" has used up its keys for new rows, since it has or had a row "
                                L"with the greatest one. Give the record a free ID of your own.");
}

void fail_as_damaged_history() {
  fail(kCannotReadFile,
       L"The history of the model is damaged. Clear it (History.Clear) to go on without what can "
       L"be undone, or take a copy of the file that was saved earlier.");
}

}  // namespace modeldb
