// SPDX-License-Identifier: MIT
#include "store/Statement.h"

#include <utility>

namespace virtualtv {

Statement::Statement(Database& database, std::string sql, std::string action)
    : database_(database), sql_(std::move(sql)), action_(std::move(action)) {}

Statement::~Statement() {
  sqlite3_finalize(statement_);
}

sqlite3_stmt* Statement::prepared() {
  if (statement_ == nullptr) {
    check(sqlite3_prepare_v3(database_.handle(), sql_.c_str(), static_cast<int>(sql_.size()) + 1,
                             SQLITE_PREPARE_PERSISTENT, &statement_, nullptr));
  }
  return statement_;
}

void Statement::check(int code) const {
  if (code != SQLITE_OK) database_.fail(action_, code);
}

void Statement::bind(int parameter, std::int64_t value) {
  check(sqlite3_bind_int64(prepared(), parameter, value));
}

void Statement::bind(int parameter, std::optional<std::int64_t> value) {
  if (value) return bind(parameter, *value);
  bind(parameter, nullptr);
}

void Statement::bind(int parameter, std::nullptr_t) {
  check(sqlite3_bind_null(prepared(), parameter));
}

void Statement::bind(int parameter, std::string_view text) {
  const char* start = text.empty() ? "" : text.data();  // SQLite reads a null pointer as NULL
  check(sqlite3_bind_text64(prepared(), parameter, start, text.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

void Statement::bind(int parameter, Bytes bytes) {
  const void* start = bytes.empty() ? static_cast<const void*>("") : bytes.data();
  check(sqlite3_bind_blob64(prepared(), parameter, start, bytes.size(), SQLITE_TRANSIENT));
}

Rows Statement::start() {
  database_.undoLeftOver();
  prepared();
  // After a failed write SQLite may have undone the whole transaction. Later writes must not be committed on their own.
  if (database_.transactionIsLost()) check(SQLITE_ABORT_ROLLBACK);
  return Rows(*this);
}

int Statement::finish() {
  Rows rows = start();
  while (rows.next()) continue;
  return sqlite3_changes(database_.handle());
}

std::string_view Rows::view(int column) const {
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
  const auto length = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
  return text == nullptr ? std::string_view() : std::string_view(text, length);
}

}  // namespace virtualtv
