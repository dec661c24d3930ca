// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "store/Database.h"

namespace virtualtv {

/// A database transaction: its end without `commit` undoes its writes. Transactions nest. An inner one undoes its own
/// writes only; the commit of the outermost one writes to disk.
class Transaction {
 public:
  /// @param action  description of the action, as for `Statement`. @throws StoreError.
  Transaction(Database& database, std::string action);
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction();

  /// Commits the writes. When the outermost commit returns they are on disk. Call at most once.
  /// @throws StoreError when the commit fails; then nothing is persisted.
  void commit();

 private:
  Database& database_;
  std::string action_;
  bool nested_;
  bool committed_ = false;
};

}  // namespace virtualtv
