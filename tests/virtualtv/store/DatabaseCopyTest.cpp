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

/// Wherever the memory ends, the reason is told, and the original is as it was.
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
