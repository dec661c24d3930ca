// SPDX-License-Identifier: MIT
#include "store/Transaction.h"

#include <gtest/gtest.h>

#include "store/Statement.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

constexpr const char* schema[] = {"CREATE TABLE thing(key INTEGER PRIMARY KEY, value BLOB) STRICT"};

class TransactionTest : public testing::Test {
 public:
  int count() {
    Rows rows = count_.query();
    rows.next();
    return static_cast<int>(rows.integer(0));
  }

  /// Leaves the database room for little more than it has now.
  void fillTheDisk() { database.execute("PRAGMA max_page_count = 3", "limit it"); }

  /// Makes SQLite refuse rollbacks, as it does when memory runs out.
  void refuseToUndo(bool refuse) {
    const auto answer = [](void*, int action, const char* what, const char*, const char*, const char*) {
      const bool undoes =
          (action == SQLITE_TRANSACTION || action == SQLITE_SAVEPOINT) && what == std::string("ROLLBACK");
      return undoes ? SQLITE_DENY : SQLITE_OK;
    };
    sqlite3_set_authorizer(database.handle(), refuse ? +answer : nullptr, nullptr);
  }

  /// Abandons a transaction whose rollback fails.
  void addWithoutUndoing() {
    const Transaction transaction(database, "add things");
    insert.run(1);
    refuseToUndo(true);
  }

  Database database{Database::inMemory, schema};
  Statement insert{database, "INSERT INTO thing(value) VALUES(zeroblob(?))", "add a thing"};

 private:
  Statement count_{database, "SELECT count(*) FROM thing", "count the things"};
};

TEST_F(TransactionTest, KeepsWhatItCommits) {
  Transaction transaction(database, "add things");
  insert.run(1);
  insert.run(1);
  transaction.commit();
  EXPECT_EQ(count(), 2);
}

TEST_F(TransactionTest, UndoesWhatItDoesNotCommit) {
  {
    Transaction transaction(database, "add things");
    insert.run(1);
  }
  EXPECT_EQ(count(), 0);
}

TEST_F(TransactionTest, StatementsWorkBetweenTheCommitAndTheEndOfTheScope) {
  Transaction transaction(database, "add things");
  insert.run(1);
  transaction.commit();
  insert.run(1);
  EXPECT_EQ(count(), 2);
}

TEST_F(TransactionTest, AnInnerOneUndoesItsOwnPartOnly) {
  Transaction outer(database, "add things");
  insert.run(1);
  {
    Transaction inner(database, "add more things");
    insert.run(1);
    insert.run(1);
  }
  outer.commit();
  EXPECT_EQ(count(), 1);
}

/// Otherwise the write would be acknowledged, and then be undone with the transaction.
TEST_F(TransactionTest, ThatCouldNotBeUndoneIsUndoneBeforeTheNextStatement) {
  addWithoutUndoing();
  refuseToUndo(false);
  insert.run(1);
  EXPECT_NE(sqlite3_get_autocommit(database.handle()), 0);
  EXPECT_EQ(count(), 1);
}

TEST_F(TransactionTest, ThatCouldNotBeUndoneIsUndoneBeforeTheNextOne) {
  addWithoutUndoing();
  refuseToUndo(false);
  Transaction transaction(database, "add things");
  insert.run(1);
  transaction.commit();
  EXPECT_EQ(count(), 1);
}

TEST_F(TransactionTest, NothingGoesOnWhileOneCantBeUndone) {
  addWithoutUndoing();
  EXPECT_EQ(failureOf([&] { insert.run(1); }), "memory: cannot undo what could not be kept: not authorized");
}

TEST_F(TransactionTest, OfWhichAPartCouldNotBeUndoneKeepsNothing) {
  {
    Transaction outer(database, "add things");
    insert.run(1);
    {
      Transaction inner(database, "add more things");
      insert.run(1);
      refuseToUndo(true);
    }
    refuseToUndo(false);
    EXPECT_EQ(failureOf([&] { outer.commit(); }),
              "memory: cannot add things: an earlier failure has undone the transaction");
  }
  EXPECT_EQ(count(), 0);
  insert.run(1);
  EXPECT_EQ(count(), 1);
}

TEST_F(TransactionTest, AnOuterOneUndoesWhatAnInnerOneCommitted) {
  {
    Transaction outer(database, "add things");
    Transaction inner(database, "add more things");
    insert.run(1);
    inner.commit();
  }
  EXPECT_EQ(count(), 0);
}

TEST_F(TransactionTest, InnerOnesNestToAnyDepth) {
  Transaction outer(database, "add things");
  Transaction middle(database, "add things");
  insert.run(1);
  {
    Transaction inner(database, "add things");
    insert.run(1);
  }
  middle.commit();
  outer.commit();
  EXPECT_EQ(count(), 1);
}

TEST_F(TransactionTest, AFullDiskUndoesAllOfIt) {
  insert.run(1);
  fillTheDisk();
  const std::string failure = failureOf([&] {
    Transaction transaction(database, "add things");
    insert.run(1);
    insert.run(100000);
    transaction.commit();
  });
  EXPECT_EQ(failure, "memory: cannot add a thing: no space left on the disk");
  EXPECT_EQ(count(), 1);
  insert.run(1);
  EXPECT_EQ(count(), 2);
}

TEST_F(TransactionTest, NothingIsWrittenOnItsOwnOnceATransactionIsLost) {
  Statement losing(database, "INSERT OR ROLLBACK INTO thing(key) VALUES(?)", "add a key");
  const std::string reason = ": an earlier failure has undone the transaction";
  {
    Transaction transaction(database, "add things");
    losing.run(1);
    EXPECT_NE(failureOf([&] { losing.run(1); }), "");
    EXPECT_EQ(failureOf([&] { insert.run(1); }), "memory: cannot add a thing" + reason);
    EXPECT_EQ(failureOf([&] { Transaction inner(database, "add more things"); }),
              "memory: cannot add more things" + reason);
    EXPECT_EQ(failureOf([&] { transaction.commit(); }), "memory: cannot add things" + reason);
  }
  EXPECT_EQ(count(), 0);
  insert.run(1);
  EXPECT_EQ(count(), 1);
}

}  // namespace
}  // namespace virtualtv::test
