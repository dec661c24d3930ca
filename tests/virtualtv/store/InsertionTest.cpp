// SPDX-License-Identifier: MIT
#include "store/Insertion.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

constexpr const char* insertedInto[] = {"CREATE TABLE thing(key INTEGER PRIMARY KEY, value ANY) STRICT"};
constexpr std::size_t few = 0;
constexpr std::size_t many = Batch::rowsOfRun;

using ThingsByKey = std::map<std::int64_t, std::string>;

class InsertionTest : public testing::Test {
 public:
  Database database{Database::inMemory, insertedInto};
  Insertion insertion{database, "INSERT INTO thing(value, key)", 2, "add a thing"};

  ThingsByKey all() {
    Statement read(database, "SELECT key, value FROM thing ORDER BY key", "read the things");
    ThingsByKey things;
    for (Rows rows = read.query(); rows.next();) things.emplace(rows.integer(0), rows.text(1));
    return things;
  }
};

TEST_F(InsertionTest, AddsOneRow) {
  insertion.run(std::string("one"), 1);
  EXPECT_EQ(all(), (ThingsByKey{{1, "one"}}));
}

/// Runs with batches of several sizes, small and large.
class Batches : public InsertionTest, public testing::WithParamInterface<std::size_t> {};

INSTANTIATE_TEST_SUITE_P(Each, Batches, testing::Values(few, many - 1, many, 3 * many));

TEST_P(Batches, AddAnyNumberOfRowsWhateverWasExpected) {
  for (const int count : {0, 1, 2, Batch::rowsOfRun - 1, Batch::rowsOfRun, Batch::rowsOfRun + 1, 2 * Batch::rowsOfRun,
                          3 * Batch::rowsOfRun + 7}) {
    database.execute("DELETE FROM thing", "remove the things");
    ThingsByKey wanted;
    Batch batch(insertion, GetParam());
    for (int key = 1; key <= count; ++key) {
      const std::string value = "thing " + std::to_string(key);
      wanted.emplace(key, value);
      batch.add(value, key);
    }
    batch.finish();
    EXPECT_EQ(all(), wanted) << count;
  }
}

TEST_P(Batches, TakeTheValuesOfARowOneByOneToo) {
  Batch batch(insertion, GetParam());
  for (const int key : {1, 2}) {
    batch.bind(std::string("one"));
    batch.bind(key);
    batch.endRow();
  }
  batch.finish();
  EXPECT_EQ(all(), (ThingsByKey{{1, "one"}, {2, "one"}}));
}

TEST_P(Batches, ThatAreGivenUpLeaveNothingToTheNext) {
  {
    Batch broken(insertion, GetParam());
    broken.bind(std::string("lost"));
  }
  Batch batch(insertion, GetParam());
  batch.add(std::string("kept"), 3);
  batch.finish();
  EXPECT_EQ(all(), (ThingsByKey{{3, "kept"}}));
}

TEST_P(Batches, CanGoOnOnceTheyAreFinished) {
  Batch batch(insertion, GetParam());
  batch.add(std::string("one"), 1);
  batch.finish();
  batch.add(std::string("two"), 2);
  batch.finish();
  batch.finish();
  EXPECT_EQ(all(), (ThingsByKey{{1, "one"}, {2, "two"}}));
}

TEST_P(Batches, SayWhatCouldNotBeDone) {
  insertion.run(std::string("one"), 1);
  EXPECT_EQ(failureOf([&] {
              Batch batch(insertion, GetParam());
              batch.add(std::string("again"), 1);
              batch.finish();
            }),
            "memory: cannot add a thing: UNIQUE constraint failed: thing.key");
  EXPECT_EQ(all(), (ThingsByKey{{1, "one"}}));
}

}  // namespace
}  // namespace virtualtv::test
