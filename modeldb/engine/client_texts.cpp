#include "modeldb/engine/client_texts.h"

#include "modeldb/base/failure.h"
#include "modeldb/engine/client_text.h"
#include "modeldb/engine/database.h"

namespace modeldb {

TextResult ClientTexts::execute(std::wstring_view text, Trust trust, Seconds time_limit) {
  database_.require_open();
  if (trust != Trust::kWrite && !is_query(text)) {
    fail_on_text(kPermissionDenied, L"The text " + quoted(text),
                 L" was refused: only a SELECT is allowed here. Execute changes through the "
                 L"connection of the model database.");
  }
  switch (read_client_text(text, bound_)) {
    case TextKind::kBegin:
      database_.transactions().begin();
      return {};
    case TextKind::kCommit:
      database_.transactions().commit();
      return {};
    case TextKind::kRollback:
      database_.transactions().rollback();
      return {};
    case TextKind::kSelect:
      return {prepare_bound(text, Trust::kRead, time_limit)};
    default:
      database_.engine().require_writable();
      return {{}, prepare_bound(text, Trust::kWrite, time_limit)->run()};
  }
}

/// The statement of `text`, which was read last, with its values.
StatementLease ClientTexts::prepare_bound(std::wstring_view text, Trust author,
                                          Seconds time_limit) {
  StatementLease statement = [&] {
    try {
      return database_.prepare(bound_.text, author);
    } catch (const TextError& error) {
      // The client knows its own text, not what was made of it.
      fail_on_text(L"The statement " + quoted(text), error);
    }
  }();
  statement->limit_time(time_limit);
  statement->bind_all(bound_.values);
  return statement;
}

}  // namespace modeldb
