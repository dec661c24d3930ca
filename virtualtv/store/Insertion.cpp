// SPDX-License-Identifier: MIT
#include "store/Insertion.h"

#include <utility>

namespace virtualtv {

namespace {

/// @return `count` copies of `text`, separated by commas.
std::string repeated(const std::string& text, int count) {
  std::string list = text;
  while (--count > 0) list.append(", ").append(text);
  return list;
}

std::string rowOf(int columns) {
  return "(" + repeated("?", columns) + ")";
}

/// A statement that adds up to `Batch::rowsOfRun` rows. The limit allows fewer: SQLite stops before it reads the values
/// of the others.
std::string severalOf(const std::string& insertInto, int columns) {
  return insertInto + " SELECT * FROM (VALUES " + repeated(rowOf(columns), Batch::rowsOfRun) + ") LIMIT ?";
}

}  // namespace

Insertion::Insertion(Database& database, std::string insertInto, int columns, std::string action)
    : database_(database),
      insertInto_(std::move(insertInto)),
      columns_(columns),
      action_(std::move(action)),
      one_(database, insertInto_ + " VALUES " + rowOf(columns), action_) {}

/// Within a savepoint, each run that adds several rows takes time for all pages changed since the savepoint. So a large
/// batch makes few runs, and a small batch adds one row per run.
Batch::Batch(Insertion& insertion, std::size_t expected)
    : statement_(std::cmp_less(expected, rowsOfRun)
                     ? insertion.one_
                     : several_.emplace(insertion.database_, severalOf(insertion.insertInto_, insertion.columns_),
                                        insertion.action_)),
      columns_(insertion.columns_),
      most_(several_ ? columns_ * rowsOfRun : columns_) {}

void Batch::finish() {
  if (bound_ == 0) return;
  if (several_) several_->bind(most_ + 1, bound_ / columns_);
  bound_ = 0;
  statement_.finish();
}

}  // namespace virtualtv
