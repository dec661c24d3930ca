// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "store/Database.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

constexpr const char* schema[] = {"CREATE TABLE thing(key INTEGER PRIMARY KEY, value BLOB) STRICT"};
constexpr int things = 50;

int count(Database& database) {
  return std::stoi(answerOf(database, "SELECT count(*) FROM thing"));
}

void add(Database& database) {
  database.execute("INSERT INTO thing(value) VALUES(zeroblob(1000))", "add a thing");
}

class DatabaseCopy : public testing::Test {
 public:
  Database original{Database::inMemory, schema, [](Database& database) {
                      for (int thing = 0; thing < things; ++thing) add(database);
                    }};
};

TEST_F(DatabaseCopy, HasTheRowsOfTheOriginal) {
  Database copy(Database::inMemory, original);
  EXPECT_EQ(count(copy), things);
  EXPECT_EQ(copy.name(), "memory");
  for (const char* mark : {"PRAGMA user_version", "PRAGMA application_id", "PRAGMA foreign_keys"}) {
    EXPECT_EQ(answerOf(copy, mark), answerOf(original, mark)) << mark;
  }
}

TEST_F(DatabaseCopy, KeepsItsOwnRows) {
  Database copy(Database::inMemory, original);
  add(copy);
  Database another(Database::inMemory, original);
  EXPECT_EQ(count(copy), things + 1);
  EXPECT_EQ(count(original), things);
  EXPECT_EQ(count(another), things);
}

TEST_F(DatabaseCopy, OutlivesTheOriginal) {
  Database copy = [] {
    const Database brief(Database::inMemory, schema, add);
    return Database(Database::inMemory, brief);
  }();
  EXPECT_EQ(count(copy), 1);
}

TEST_F(DatabaseCopy, OfAnImageHasTheRowsThatThereWereWhenItWasTaken) {
  const DatabaseImage image = original.image();
  add(original);
  Database copy(Database::inMemory, image);
  EXPECT_EQ(count(copy), things);
  add(copy);
  Database another(Database::inMemory, image);
  EXPECT_EQ(count(another), things);
}

/// The image contains the rows that are still in the file's log. It has no log of its own.
TEST_F(DatabaseCopy, OfTheImageOfAFileHasItsRows) {
  const TemporaryDirectory directory;
  Database file(directory.path() / "file", schema, add);
  add(file);
  const DatabaseImage image = file.image();
  Database copy(Database::inMemory, image);
  EXPECT_EQ(count(copy), 2);
  add(copy);
  EXPECT_EQ(count(copy), 3);
  add(file);
  EXPECT_EQ(count(file), 3);
}

TEST_F(DatabaseCopy, OfAnImageTellsThatThereIsNoMemory) {
  const DatabaseImage image = original.image();
  sqlite3_hard_heap_limit64(sqlite3_memory_used() + 1024);
  const std::string noImage = failureOf([&] { original.image(); });
  sqlite3_hard_heap_limit64(0);
  EXPECT_EQ(noImage, "memory: cannot copy it: out of memory");
  std::set<std::string> failures;
  std::string failure = "none yet";
  for (int room = 1024; !failure.empty(); room += 1024) {
    sqlite3_hard_heap_limit64(sqlite3_memory_used() + room);
    failure = failureOf([&] { Database(Database::inMemory, image); });
    sqlite3_hard_heap_limit64(0);
    failures.insert(failure);
  }
  EXPECT_EQ(failures, (std::set<std::string>{"", "memory: cannot copy it: out of memory",
                                             "memory: cannot open it: out of memory"}));
}

/// Wherever memory runs out, the copy reports the reason and the original is unchanged.
TEST_F(DatabaseCopy, TellsThatThereIsNoMemory) {
  constexpr int step = 1024;
  std::set<std::string> failures;
  std::string failure = "none yet";
  for (int room = step; !failure.empty(); room += step) {
    sqlite3_hard_heap_limit64(sqlite3_memory_used() + room);
    failure = failureOf([&] { Database(Database::inMemory, original); });
    sqlite3_hard_heap_limit64(0);
    failures.insert(failure);
  }
  EXPECT_EQ(failures, (std::set<std::string>{"", "memory: cannot copy it: out of memory",
                                             "memory: cannot open it: out of memory"}));
  EXPECT_EQ(count(original), things);
}

}  // namespace
}  // namespace virtualtv::test
