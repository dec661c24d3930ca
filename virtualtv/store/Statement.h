// SPDX-License-Identifier: MIT
#pragma once

#include <sqlite3.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "store/Database.h"

namespace virtualtv {

using Bytes = std::span<const std::byte>;

class Rows;

/// One column of a row, for callers that read it several times. Bytes are valid until the run moves to the next row.
class Column {
 public:
  int type() const { return sqlite3_value_type(value_); }  ///< SQLite's type code: `SQLITE_NULL` and so on
  bool isNull() const { return type() == SQLITE_NULL; }
  bool isInteger() const { return type() == SQLITE_INTEGER; }
  std::int64_t integer() const { return sqlite3_value_int64(value_); }
  Bytes bytes() const {
    const auto* start = static_cast<const std::byte*>(sqlite3_value_blob(value_));
    return {start, static_cast<std::size_t>(sqlite3_value_bytes(value_))};
  }

 private:
  friend class Rows;

  explicit Column(sqlite3_value* value) : value_(value) {}

  sqlite3_value* value_;
};

/// A prepared statement. It is prepared at its first use and can be run any number of times, one run at a time. All its
/// operations throw `StoreError`.
class Statement {
 public:
  /// @param action  what the statement does, as it follows "cannot" in an error message: "read the services".
  Statement(Database& database, std::string sql, std::string action);
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;
  ~Statement();

  /// Binds `values` to the parameters, from the first on, and starts a run.
  template <typename... Values>
  Rows query(const Values&... values);

  /// Binds `values` and runs the statement to the end. @return the number of rows changed.
  template <typename... Values>
  int run(const Values&... values);

  /// Binds one parameter of the next run, counted from 1. Text and bytes are copied.
  void bind(int parameter, std::int64_t value);
  void bind(int parameter, std::optional<std::int64_t> value);
  void bind(int parameter, std::nullptr_t);
  void bind(int parameter, std::string_view text);
  void bind(int parameter, Bytes bytes);

  /// Starts a run with the bound parameters.
  Rows start();
  /// Runs to the end with the bound parameters. @return the number of rows changed.
  int finish();

 private:
  friend class Rows;

  sqlite3_stmt* prepared();
  void check(int code) const;

  Database& database_;
  std::string sql_;
  std::string action_;
  sqlite3_stmt* statement_ = nullptr;
};

/// A run of a statement, which yields its rows one at a time. Destroying it ends the run.
class Rows {
 public:
  Rows(const Rows&) = delete;
  Rows& operator=(const Rows&) = delete;
  ~Rows() { sqlite3_reset(statement_); }

  /// Moves to the next row. @return false after the last row.
  bool next() {
    const int code = sqlite3_step(statement_);
    if (code != SQLITE_ROW && code != SQLITE_DONE) owner_.check(code);
    return code == SQLITE_ROW;
  }

  /// Columns of the current row, counted from 0. Bytes and views are valid until the next call of `next`.

  Column operator[](int column) const { return Column(sqlite3_column_value(statement_, column)); }
  bool isNull(int column) const { return (*this)[column].isNull(); }
  bool isInteger(int column) const { return (*this)[column].isInteger(); }
  std::int64_t integer(int column) const { return (*this)[column].integer(); }
  Bytes bytes(int column) const { return (*this)[column].bytes(); }
  std::string_view view(int column) const;  ///< a text
  std::string text(int column) const { return std::string(view(column)); }

 private:
  friend class Statement;

  explicit Rows(Statement& owner) : owner_(owner), statement_(owner.statement_) {}

  Statement& owner_;
  sqlite3_stmt* statement_;
};

template <typename... Values>
Rows Statement::query(const Values&... values) {
  int parameter = 0;
  (bind(++parameter, values), ...);
  return start();
}

template <typename... Values>
int Statement::run(const Values&... values) {
  int parameter = 0;
  (bind(++parameter, values), ...);
  return finish();
}

}  // namespace virtualtv
