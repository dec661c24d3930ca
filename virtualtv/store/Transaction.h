#pragma once

#include <string>

#include "store/Database.h"

namespace virtualtv {

/// Writes that are kept together or not at all: what is not committed when the scope ends is undone. One inside another
/// undoes its own part; only the outermost commit puts anything on the disk.
class Transaction {
 public:
  /// @param action  what it does, as for `Statement`. @throws StoreError.
  Transaction(Database& database, std::string action);
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction();

  /// Keeps what was written; for the outermost, on the disk when it returns. Called once.
  /// @throws StoreError when that fails; then nothing was kept.
  void commit();

 private:
  Database& database_;
  std::string action_;
  bool nested_;
  bool committed_ = false;
};

}  // namespace virtualtv
