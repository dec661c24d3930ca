// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "store/Database.h"

namespace virtualtv {

/// A database transaction. When it is destroyed without a `commit`, its writes are undone. Transactions nest: an inner
/// transaction undoes only its own writes, and the commit of the outermost one writes to disk.
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
