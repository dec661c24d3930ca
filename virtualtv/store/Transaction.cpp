#include "store/Transaction.h"

#include <utility>

namespace virtualtv {

Transaction::Transaction(Database& database, std::string action)
    : database_(database), action_(std::move(action)), nested_(database.transactions_ > 0) {
  if (database_.transactionIsLost()) database_.fail(action_, SQLITE_ABORT_ROLLBACK);
  database_.execute(nested_ ? "SAVEPOINT part" : "BEGIN IMMEDIATE", action_.c_str());
  ++database_.transactions_;
}

Transaction::~Transaction() {
  if (committed_) return;
  --database_.transactions_;
  // Should this fail, SQLite has undone it already, or does so when the file is opened the next time.
  sqlite3_exec(database_.handle(), nested_ ? "ROLLBACK TO part; RELEASE part" : "ROLLBACK", nullptr, nullptr, nullptr);
}

void Transaction::commit() {
  if (database_.transactionIsLost()) database_.fail(action_, SQLITE_ABORT_ROLLBACK);
  database_.execute(nested_ ? "RELEASE part" : "COMMIT", action_.c_str());
  committed_ = true;
  --database_.transactions_;
}

}  // namespace virtualtv
