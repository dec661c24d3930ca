// SPDX-License-Identifier: MIT
#include "store/Transaction.h"

#include <utility>

namespace virtualtv {

Transaction::Transaction(Database& database, std::string action)
    : database_(database), action_(std::move(action)), nested_(database.transactions_ > 0) {
  if (database_.transactionIsLost()) database_.fail(action_, SQLITE_ABORT_ROLLBACK);
  database_.undoLeftOver();
  database_.execute(nested_ ? "SAVEPOINT part" : "BEGIN IMMEDIATE", action_.c_str());
  ++database_.transactions_;
}

Transaction::~Transaction() {
  if (committed_) return;
  --database_.transactions_;
  const char* const undo = nested_ ? "ROLLBACK TO part; RELEASE part" : "ROLLBACK";
  // When this fails, SQLite has either undone the transaction already or lacks the memory to. In the second case it is
  // undone before the next operation.
  const int code = sqlite3_exec(database_.handle(), undo, nullptr, nullptr, nullptr);
  database_.partIsLeftOver_ = nested_ && (code != SQLITE_OK || database_.partIsLeftOver_);
}

void Transaction::commit() {
  if (database_.transactionIsLost()) database_.fail(action_, SQLITE_ABORT_ROLLBACK);
  database_.execute(nested_ ? "RELEASE part" : "COMMIT", action_.c_str());
  committed_ = true;
  --database_.transactions_;
}

}  // namespace virtualtv
