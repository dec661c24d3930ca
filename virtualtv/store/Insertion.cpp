// SPDX-License-Identifier: MIT
#include "store/Insertion.h"

#include <utility>

namespace virtualtv {

namespace {

/// @return `text` as often as `count`, between commas.
std::string repeated(const std::string& text, int count) {
  std::string list = text;
  while (--count > 0) list.append(", ").append(text);
  return list;
}

std::string rowOf(int columns) {
  return "(" + repeated("?", columns) + ")";
}

/// The limit allows for runs with fewer rows: SQLite stops before it reads the values of the others.
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

/// A run that adds several rows, within a savepoint, takes time for all pages that were changed since that. So runs of
/// a large batch are few, and those of a small one add one row.
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
