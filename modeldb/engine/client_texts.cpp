#include "modeldb/engine/client_texts.h"

#include <algorithm>
#include <utility>

#include "modeldb/base/failure.h"
#include "modeldb/engine/client_text.h"
#include "modeldb/engine/database.h"
#include "modeldb/engine/savepoint.h"

namespace modeldb {

void ClientTexts::set_time_limit(Seconds limit) {
  time_limit_ = limit;
  database_.engine().limit_waiting(limit);
}

TextResult ClientTexts::execute(std::wstring_view text, Trust trust, Seconds time_limit) {
  database_.require_open();
  if (TextShape* const shape = find_shape(text)) {
    if (trust == Trust::kWrite || shape->kind() == TextKind::kSelect) {
      return run(text, shape->kind(), shape, time_limit);
    }
  }
  if (is_blank(text)) {
    fail_on_text(kErrorsInCommand, L"The text " + quoted(text),
                 L" holds no statement. Pass one, such as \"SELECT * FROM Vertices\".");
  }
  if (trust != Trust::kWrite && !is_query(text)) {
    fail_on_text(kPermissionDenied, L"The text " + quoted(text),
                 L" was refused: only a SELECT is allowed here. Execute changes through the "
                 L"connection of the model database.");
  }
  switch (const TextKind kind = read_client_text(text, read_)) {
    case TextKind::kBegin:
      database_.transactions().begin();
      return {};
    case TextKind::kCommit:
      database_.transactions().commit();
      return {};
    case TextKind::kRollback:
      database_.transactions().rollback();
      return {};
    default:
      return run(text, kind, keep_shape(text, kind), time_limit);
  }
}

TextShape* ClientTexts::find_shape(std::wstring_view text) {
  const auto found = std::ranges::find_if(
      shapes_, [&](const TextShape& shape) { return shape.matches(text, read_.values); });
  return found == shapes_.end() ? nullptr : &*found;
}

TextShape* ClientTexts::keep_shape(std::wstring_view text, TextKind kind) {
  auto shape = TextShape::of(text, kind, read_);
  if (!shape) return nullptr;
  if (shapes_.size() < kMostShapes) return &shapes_.emplace_back(std::move(*shape));
  TextShape& place = shapes_[next_shape_++ % kMostShapes];
  place = std::move(*shape);
  return &place;
}

TextResult ClientTexts::run(std::wstring_view text, TextKind kind, TextShape* shape,
                            Seconds time_limit) {
  if (kind == TextKind::kSelect) return {prepare(text, Trust::kRead, shape, time_limit)};
  database_.engine().require_writable();
  return {{}, run_change(*prepare(text, Trust::kWrite, shape, time_limit))};
}

std::int64_t ClientTexts::run_change(Statement& statement) {
  if (database_.transactions().is_open()) return statement.run();
  Savepoint whole(database_);
  const std::int64_t rows = statement.run();
  whole.release();
  return rows;
}

StatementLease ClientTexts::prepare(std::wstring_view text, Trust author, TextShape* shape,
                                    Seconds time_limit) {
  StatementLease statement = [&] {
    try {
      return shape ? database_.prepare(shape->sql(), author, shape->place())
                   : database_.prepare(read_.text, author);
    } catch (const TextError& error) {
      // The client knows its own text, not what was made of it.
      fail_on_text(L"The statement " + quoted(text), error);
    }
  }();
  statement->limit_time(time_limit);
  statement->bind_all(read_.values);
  return statement;
}

}  // namespace modeldb
