// SPDX-License-Identifier: MIT
#include "store/Statement.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

constexpr const char* schema[] = {"CREATE TABLE thing(key INTEGER PRIMARY KEY, value ANY) STRICT"};

class StatementTest : public testing::Test {
 public:
  Database database{Database::inMemory, schema};
  Statement insert{database, "INSERT INTO thing(value) VALUES(?)", "add a thing"};
  Statement last{database, "SELECT value FROM thing ORDER BY key DESC LIMIT 1", "read the last thing"};
  Statement all{database, "SELECT key FROM thing ORDER BY key", "read the things"};
};

TEST_F(StatementTest, KeepsIntegersOfAllSixtyFourBits) {
  for (const std::int64_t value : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}, std::int64_t{0},
                                   std::numeric_limits<std::int64_t>::max()}) {
    insert.run(value);
    Rows rows = last.query();
    ASSERT_TRUE(rows.next());
    EXPECT_TRUE(rows.isInteger(0));
    EXPECT_EQ(rows.integer(0), value);
  }
}

TEST_F(StatementTest, KeepsTextsWithAnyBytes) {
  for (const std::string& value : {std::string(), std::string("a\0b", 3), std::string("\xff\xfe")}) {
    insert.run(value);
    Rows rows = last.query();
    ASSERT_TRUE(rows.next());
    EXPECT_FALSE(rows.isNull(0));
    EXPECT_EQ(rows.text(0), value);
  }
}

TEST_F(StatementTest, KeepsBytes) {
  const std::vector<std::byte> value{std::byte{0}, std::byte{255}, std::byte{7}};
  insert.run(Bytes(value));
  Rows rows = last.query();
  ASSERT_TRUE(rows.next());
  EXPECT_EQ(std::vector<std::byte>(rows.bytes(0).begin(), rows.bytes(0).end()), value);
}

TEST_F(StatementTest, TellsEmptyBytesFromNothing) {
  insert.run(Bytes());
  {
    Rows rows = last.query();
    ASSERT_TRUE(rows.next());
    EXPECT_FALSE(rows.isNull(0));
    EXPECT_TRUE(rows.bytes(0).empty());
  }
  insert.run(std::optional<std::int64_t>());
  Rows rows = last.query();
  ASSERT_TRUE(rows.next());
  EXPECT_TRUE(rows.isNull(0));
}

TEST_F(StatementTest, AnAbandonedRunDoesNotDisturbTheNext) {
  for (int value = 0; value < 3; ++value) insert.run(value);
  {
    Rows rows = all.query();
    ASSERT_TRUE(rows.next());
  }
  Rows rows = all.query();
  int count = 0;
  while (rows.next()) EXPECT_EQ(rows.integer(0), ++count);
  EXPECT_EQ(count, 3);
}

TEST_F(StatementTest, ARunTellsHowManyRowsItChanged) {
  for (int value = 0; value < 3; ++value) insert.run(value);
  Statement remove(database, "DELETE FROM thing WHERE value < ?", "remove things");
  EXPECT_EQ(remove.run(2), 2);
  EXPECT_EQ(remove.run(2), 0);
}

TEST_F(StatementTest, AFailureSaysWhatCouldNotBeDone) {
  Statement wrong(database, "SELECT key FROM nowhere", "look for it");
  EXPECT_EQ(failureOf([&] { wrong.query(); }), "memory: cannot look for it: no such table: nowhere");
}

TEST_F(StatementTest, AStatementCanBeRunAgainAfterItFailed) {
  Statement keyed(database, "INSERT INTO thing(key) VALUES(?)", "add a key");
  keyed.run(1);
  EXPECT_NE(failureOf([&] { keyed.run(1); }), "");
  EXPECT_EQ(keyed.run(2), 1);
}

}  // namespace
}  // namespace virtualtv::test
