// SPDX-License-Identifier: MIT
#include "proof/storage/Disk.h"

#include <gtest/gtest.h>

#include <set>

#include "proof/storage/PowerLoss.h"
#include "store/SettingsStore.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::proof {
namespace {

const Schema schema(&settingsTables, 1);

class DiskTest : public testing::Test {
 protected:
  DiskTest() { disk.insert({}); }

  /// The content of the disk if the power fails now.
  Image afterPowerLoss(Rest rest, std::uint32_t seed = 1) const {
    PowerLoss power({});
    for (const Change& change : disk.changes()) power.apply(change);
    std::mt19937 random(seed);
    return power.image(rest, random);
  }

  Disk& disk = Disk::instance();
  test::TemporaryDirectory directory;
  const std::string file = directory / "tv.db";
};

TEST_F(DiskTest, HoldsWhatADatabaseKeeps) {
  {
    Database database(file, schema);
    SettingsStore(database).set("key", 5);
  }
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(disk.image().count(file), 1U);
  Database database(file, schema);
  EXPECT_EQ(SettingsStore(database).get("key"), Setting(5));
}

/// SQLite's own access to a real disk behaves the same.
TEST_F(DiskTest, FindsAFileWithoutContentOnlyWhenAskedForMore) {
  disk.insert({{"empty", ""}, {"full", "x"}});
  const auto answers = [&](const char* name, int question) {
    int answer = -1;
    EXPECT_EQ(disk.exists(name, question, answer), SQLITE_OK);
    return answer;
  };
  EXPECT_EQ(answers("empty", SQLITE_ACCESS_EXISTS), 0);
  EXPECT_EQ(answers("empty", SQLITE_ACCESS_READWRITE), 1);
  EXPECT_EQ(answers("full", SQLITE_ACCESS_EXISTS), 1);
  EXPECT_EQ(answers("none", SQLITE_ACCESS_READWRITE), 0);
}

TEST_F(DiskTest, FailsTheChosenAccessAndNoOther) {
  Database database(file, schema);
  SettingsStore store(database);
  store.set("key", 1);
  disk.fail({Access::sync, 2, false, SQLITE_IOERR});
  store.set("key", 2);
  EXPECT_EQ(test::failureOf([&] { store.set("key", 3); }),
            file + ": cannot keep a setting: writing to the disk failed");
  store.set("key", 4);
  EXPECT_EQ(disk.hits(), 1U);
}

TEST_F(DiskTest, FailsFromTheChosenAccessOnUntilItIsHealed) {
  Database database(file, schema);
  SettingsStore store(database);
  disk.fail({Access::write, 1, true, SQLITE_FULL});
  for (int attempt = 0; attempt < 2; ++attempt) {
    EXPECT_EQ(test::failureOf([&] { store.set("key", 1); }),
              file + ": cannot keep a setting: no space left on the disk");
  }
  disk.heal();
  store.set("key", 2);
  EXPECT_EQ(store.get("key"), Setting(2));
}

TEST_F(DiskTest, ThatCantBeReadFromIsSaidToBe) {
  {
    Database database(file, schema);
    SettingsStore(database).set("key", 1);
  }
  disk.fail({Access::read, 1, true, SQLITE_IOERR});
  EXPECT_EQ(test::failureOf([&] { Database(file, schema); }), file + ": cannot open it: reading from the disk failed");
}

TEST_F(DiskTest, RefusesAFileThatAnotherHasLocked) {
  Database database(file, schema);
  SettingsStore(database).set("key", 1);
  EXPECT_EQ(test::failureOf([&] { Database(file, schema); }), file + ": cannot open it: another process has locked it");
}

TEST_F(DiskTest, LosesWhatWasNotSyncedWhenThePowerGoes) {
  disk.note();
  sqlite3* database = nullptr;
  sqlite3_open(file.c_str(), &database);
  sqlite3_exec(database, "PRAGMA synchronous = OFF; CREATE TABLE thing(value)", nullptr, nullptr, nullptr);
  sqlite3_close(database);
  EXPECT_EQ(afterPowerLoss(Rest::none).count(file), 0U);
  EXPECT_EQ(afterPowerLoss(Rest::all), disk.image());
}

TEST_F(DiskTest, KeepsAnyPartOfWhatWasNotSynced) {
  disk.note();
  sqlite3* database = nullptr;
  sqlite3_open(file.c_str(), &database);
  sqlite3_exec(database, "PRAGMA synchronous = OFF; CREATE TABLE thing(value)", nullptr, nullptr, nullptr);
  sqlite3_close(database);
  std::set<Image> images;
  for (std::uint32_t seed = 0; seed < 100; ++seed) images.insert(afterPowerLoss(Rest::some, seed));
  EXPECT_GT(images.size(), 10U);
}

TEST_F(DiskTest, KeepsWhatWasSyncedWhenThePowerGoes) {
  disk.note();
  {
    Database database(file, schema);
    SettingsStore(database).set("key", 5);
    const Image image = afterPowerLoss(Rest::none);
    EXPECT_EQ(image.count(file + "-wal"), 1U);
  }
  disk.insert(afterPowerLoss(Rest::none));
  Database database(file, schema);
  EXPECT_EQ(SettingsStore(database).get("key"), Setting(5));
}

/// Without a write-ahead log the writes would not survive a power cut.
TEST_F(DiskTest, ADatabaseThatCantSwitchToItsWriteAheadLogIsRefused) {
  disk.fail({Access::sync, 1, false, SQLITE_IOERR});
  EXPECT_EQ(test::failureOf([&] { Database(file, schema); }), file + ": cannot open it: writing to the disk failed");
  disk.heal();
  Database database(file, schema);
  SettingsStore(database).set("key", 5);
  EXPECT_EQ(disk.image().count(file + "-wal"), 1U);
}

}  // namespace
}  // namespace virtualtv::proof
