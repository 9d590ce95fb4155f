#include "modeldb/engine/statement.h"

#include <utility>

#include "modeldb/engine/database.h"

namespace modeldb {

const Columns& Statement::columns() {
  if (!columns_) {
    require_open();
    columns_.emplace(describe_columns(), sql());
  }
  return *columns_;
}

std::size_t Statement::size(int column) const {
  switch (type(column)) {
    case Type::kNull:
      return 0;
    case Type::kInteger:
      return sizeof(std::int64_t);
    case Type::kReal:
      return sizeof(double);
    case Type::kText:
      return text(column).size() * sizeof(wchar_t);
    case Type::kBlob:
      return blob(column).size();
  }
  return 0;
}

StatementLease::StatementLease(std::shared_ptr<Database> database, Statement& cached)
    : database_(std::move(database)), statement_(&cached) {
  cached.in_use_ = true;
}

StatementLease::StatementLease(std::shared_ptr<Database> database, std::unique_ptr<Statement> own)
    : database_(std::move(database)), own_(std::move(own)), statement_(own_.get()) {}

StatementLease::StatementLease(StatementLease&& other) noexcept
    : database_(std::move(other.database_)),
      own_(std::move(other.own_)),
      statement_(std::exchange(other.statement_, nullptr)) {}

StatementLease& StatementLease::operator=(StatementLease other) noexcept {
  std::swap(database_, other.database_);
  std::swap(own_, other.own_);
  std::swap(statement_, other.statement_);
  return *this;
}

StatementLease::~StatementLease() {
  if (!statement_ || own_) return;
  statement_->in_use_ = false;
  statement_->clear();
}

}  // namespace modeldb
