// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "store/Statement.h"

namespace virtualtv {

/// A statement that adds rows to a table. All operations of this class and of `Batch` throw `StoreError`.
class Insertion {
 public:
  /// @param insertInto  the statement up to its values: "INSERT INTO thing(key, value)".
  /// @param columns  the number of values of a row.
  /// @param action  as for `Statement`.
  Insertion(Database& database, std::string insertInto, int columns, std::string action);

  /// Adds one row.
  template <typename... Values>
  void run(const Values&... values) {
    one_.run(values...);
  }

 private:
  friend class Batch;

  Database& database_;
  std::string insertInto_;
  int columns_;
  std::string action_;
  Statement one_;
};

/// Rows on their way into a table, added in their order. Only one batch of an insertion may be in use at a time.
///
/// A large batch adds many rows in one run of a statement. That takes two thirds of the time of one run per row.
class Batch {
 public:
  /// The rows that a run of a large batch adds.
  static constexpr int rowsOfRun = 500;

  /// @param expected  roughly the number of rows; the batch is large from `rowsOfRun` on.
  Batch(Insertion& insertion, std::size_t expected);

  template <typename... Values>
  void add(const Values&... values) {
    (bind(values), ...);
    endRow();
  }

  /// The values of a row can also be given one by one.
  template <typename Value>
  void bind(const Value& value) {
    statement_.bind(++bound_, value);
  }
  void endRow() {
    if (bound_ == most_) finish();
  }

  /// Adds the rows that still wait. Without it they are lost.
  void finish();

 private:
  std::optional<Statement> several_;  ///< of a large batch; not kept, since it needs memory for all its rows
  Statement& statement_;
  int columns_;
  int most_;       ///< values of a run
  int bound_ = 0;  ///< values that wait for a run
};

}  // namespace virtualtv
