// SPDX-License-Identifier: MIT
#include "store/Database.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <vector>

#include "store/Statement.h"
#include "store/Transaction.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

constexpr const char* oldSchema[] = {"CREATE TABLE thing(key INTEGER PRIMARY KEY, value BLOB) STRICT"};
constexpr const char* newSchema[] = {oldSchema[0], "ALTER TABLE thing ADD COLUMN colour TEXT DEFAULT 'red'"};
constexpr std::chrono::milliseconds noPatience{0};

int count(Database& database) {
  Statement statement(database, "SELECT count(value) FROM thing", "count the things");
  Rows rows = statement.query();
  rows.next();
  return static_cast<int>(rows.integer(0));
}

void add(Database& database, int size = 1) {
  Statement(database, "INSERT INTO thing(value) VALUES(zeroblob(?))", "add a thing").run(size);
}

class DatabaseFile : public testing::Test {
 public:
  /// Makes a database with `things` rows that take some pages.
  void make(int things) {
    Database database(file, oldSchema);
    for (int thing = 0; thing < things; ++thing) add(database, 1000);
  }

  /// A process adds a row and dies; its log stays.
  void leaveLog(Schema schema) {
    const std::string end = inChild([&]() -> std::string {
      Database database(file, schema);
      add(database);
      std::_Exit(0);
    });
    EXPECT_EQ(end, "");
  }

  std::string failureToOpen() {
    return failureOf([&] { Database(file, oldSchema, {}, noPatience); });
  }

  /// The names of the files in the directory.
  std::set<std::string> filesThere() const {
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(directory.path())) {
      names.insert(entry.path().filename());
    }
    return names;
  }

  std::string failure(const std::string& text) const { return file.string() + ": cannot " + text; }

  TemporaryDirectory directory;
  const std::filesystem::path file = directory / "a.db";
  const std::filesystem::path log = directory / "a.db-wal";
  const std::filesystem::path mark = directory / "a.db-new";
};

TEST_F(DatabaseFile, KeepsItsRows) {
  make(3);
  Database database(file, oldSchema);
  EXPECT_EQ(count(database), 3);
}

TEST_F(DatabaseFile, HasEveryCommitOnTheDisk) {
  Database database(file, oldSchema);
  EXPECT_EQ(answerOf(database, "PRAGMA journal_mode"), "wal");
  EXPECT_EQ(answerOf(database, "PRAGMA synchronous"), "2");
}

TEST_F(DatabaseFile, KeepsWhatWasCommittedWhenTheProcessDies) {
  const std::string end = inChild([&]() -> std::string {
    Database database(file, oldSchema);
    add(database);
    add(database);
    std::_Exit(0);
  });
  ASSERT_EQ(end, "");
  ASSERT_GT(std::filesystem::file_size(log), 0U);
  Database database(file, oldSchema);
  EXPECT_EQ(count(database), 2);
}

TEST_F(DatabaseFile, KeepsNothingOfATransactionInWhichTheProcessDies) {
  const std::string end = inChild([&]() -> std::string {
    Database database(file, oldSchema);
    add(database);
    Transaction transaction(database, "add things");
    for (int thing = 0; thing < 50; ++thing) add(database, 1'000'000);  // more than fits into the cache
    std::_Exit(0);
  });
  ASSERT_EQ(end, "");
  ASSERT_GT(std::filesystem::file_size(log), 1'000'000U);
  Database database(file, oldSchema);
  EXPECT_EQ(count(database), 1);
}

TEST_F(DatabaseFile, LooksAfterReferences) {
  Database database(file, oldSchema);
  EXPECT_EQ(answerOf(database, "PRAGMA foreign_keys"), "1");
}

TEST_F(DatabaseFile, IsBroughtToTheNewestVersionWithItsRows) {
  make(2);
  Database database(file, newSchema);
  EXPECT_EQ(count(database), 2);
  EXPECT_EQ(answerOf(database, "SELECT colour FROM thing"), "red");
  EXPECT_EQ(answerOf(database, "PRAGMA user_version"), "2");
}

TEST_F(DatabaseFile, StaysInItsVersionWhenAStepFails) {
  make(2);
  constexpr const char* broken[] = {oldSchema[0], "ALTER TABLE thing ADD COLUMN colour TEXT", "CREATE TABLE thing(k)"};
  EXPECT_EQ(failureOf([&] { Database(file, broken); }),
            failure("bring it to the newest version: table thing already exists"));
  Database database(file, oldSchema);
  EXPECT_EQ(count(database), 2);
}

TEST_F(DatabaseFile, OfANewerVersionIsRefused) {
  { Database database(file, newSchema); }
  const std::string before = contentOf(file);
  EXPECT_EQ(failureToOpen(), failure("open it: a newer version of this program wrote it"));
  EXPECT_EQ(contentOf(file), before);
  EXPECT_EQ(filesThere(), std::set<std::string>({"a.db"}));
}

TEST_F(DatabaseFile, OfAnotherProgramIsRefused) {
  sqlite3* handle = nullptr;
  sqlite3_open(file.c_str(), &handle);
  sqlite3_exec(handle, "CREATE TABLE theirs(x)", nullptr, nullptr, nullptr);
  sqlite3_close(handle);
  const std::string before = contentOf(file);
  EXPECT_EQ(failureToOpen(), failure("open it: it is a database of another program"));
  EXPECT_EQ(contentOf(file), before);
}

/// An empty file may be what is left of a state; a new database in its place would hide the loss.
TEST_F(DatabaseFile, ThatIsEmptyIsRefusedAndLeftAlone) {
  for (const char* const content : {"", "x"}) {
    write(file, content);
    EXPECT_EQ(failureToOpen(), failure("open it: the file is empty"));
    EXPECT_EQ(contentOf(file), content);
    EXPECT_FALSE(std::filesystem::exists(mark));
  }
}

TEST_F(DatabaseFile, ThatIsEmptyIsLeftAloneTogetherWithTheLogOfAProcessThatDied) {
  leaveLog(oldSchema);
  write(file, "");
  const std::string logBefore = contentOf(log);
  ASSERT_FALSE(logBefore.empty());
  EXPECT_EQ(failureToOpen(), failure("open it: the file is empty, and its log " + log.string() + " is there"));
  EXPECT_EQ(contentOf(log), logBefore);
}

TEST_F(DatabaseFile, ThatIsGoneWhileItsLogIsThereIsRefused) {
  leaveLog(oldSchema);
  std::filesystem::remove(file);
  const std::string logBefore = contentOf(log);
  EXPECT_EQ(failureToOpen(), failure("open it: its log " + log.string() + " is there, but not the file itself"));
  EXPECT_FALSE(std::filesystem::exists(file));
  EXPECT_EQ(contentOf(log), logBefore);
}

/// The log is empty, so the missing file had no rows to lose.
TEST_F(DatabaseFile, IsMadeBesideAnEmptyLog) {
  write(log, "");
  Database database(file, oldSchema);
  EXPECT_EQ(count(database), 0);
}

TEST_F(DatabaseFile, WithoutATableIsRefused) {
  sqlite3* handle = nullptr;
  sqlite3_open(file.c_str(), &handle);
  sqlite3_exec(handle, "PRAGMA user_version = 0; VACUUM", nullptr, nullptr, nullptr);
  sqlite3_close(handle);
  ASSERT_GT(std::filesystem::file_size(file), 0U);
  EXPECT_EQ(failureToOpen(), failure("open it: there is nothing in it"));
}

/// This is what a power loss during the creation leaves.
TEST_F(DatabaseFile, ThatWasNeverMadeToTheEndIsMadeAnew) {
  for (const char* const content : {"", "x"}) {
    write(mark, "");
    write(file, content);
    {
      Database database(file, oldSchema);
      add(database);
    }
    EXPECT_FALSE(std::filesystem::exists(mark));
    Database database(file, oldSchema);
    EXPECT_EQ(count(database), 1);
    std::filesystem::remove(mark);
  }
}

/// A power loss may bring the mark back. It must not cost any rows.
TEST_F(DatabaseFile, KeepsItsRowsBesideAMarkThatItIsBeingMade) {
  make(3);
  write(mark, "");
  {
    Database database(file, oldSchema);
    EXPECT_EQ(count(database), 3);
  }
  EXPECT_FALSE(std::filesystem::exists(mark));
}

TEST_F(DatabaseFile, IsMarkedWhileItIsBeingMade) {
  bool marked = false;
  Database database(file, oldSchema, [&](Database&) { marked = std::filesystem::exists(mark); });
  EXPECT_TRUE(marked);
  EXPECT_FALSE(std::filesystem::exists(mark));
}

TEST_F(DatabaseFile, HasItsFirstRowsOnceItHasItsTables) {
  const std::string end = inChild([&]() -> std::string {
    const Database killed(file, oldSchema, [](Database& made) {
      add(made);
      std::_Exit(0);
    });
    return "was not filled";
  });
  ASSERT_EQ(end, "");
  Database database(file, oldSchema, [](Database& made) {
    add(made);
    add(made);
  });
  EXPECT_EQ(count(database), 2);
}

TEST_F(DatabaseFile, GetsRowsWithANewVersionAndNotAgain) {
  make(2);
  const auto fill = [](Database& made) { add(made); };
  { Database database(file, newSchema, fill); }
  Database database(file, newSchema, fill);
  EXPECT_EQ(count(database), 3);
}

TEST_F(DatabaseFile, ThatIsNoDatabaseIsRefusedAndLeftAlone) {
  std::mt19937 random(7);
  std::string noise(20000, ' ');
  for (char& byte : noise) byte = static_cast<char>(random());
  for (const std::string& content :
       {noise, noise.substr(0, 10), std::string("VDR;channels\n"), std::string(5000, '\0')}) {
    write(file, content);
    EXPECT_EQ(failureToOpen(), failure("open it: the file is damaged, or is not a database"));
    EXPECT_EQ(contentOf(file), content);
  }
}

TEST_F(DatabaseFile, ThatIsCutOffIsRefusedAndLeftAlone) {
  make(20);
  const std::string whole = contentOf(file);
  for (const std::size_t size : {std::size_t{10}, std::size_t{100}, std::size_t{4096}, whole.size() / 2}) {
    write(file, whole.substr(0, size));
    const std::string text = failureOf([&] {
      Database database(file, oldSchema);
      count(database);
    });
    EXPECT_TRUE(text.starts_with(failure(""))) << text;
    EXPECT_NE(text.find("the file is damaged"), std::string::npos) << text;
    EXPECT_EQ(contentOf(file), whole.substr(0, size));
    EXPECT_EQ(filesThere(), std::set<std::string>({"a.db"}));
  }
}

TEST_F(DatabaseFile, WithADamagedPageFailsWhereThatIsMet) {
  make(100);
  const std::string whole = contentOf(file);
  overwrite(file, whole.size() / 2 / 4096 * 4096, std::string(4096, '\x5a'));
  const std::string damaged = contentOf(file);
  {
    Database database(file, oldSchema);
    EXPECT_EQ(answerOf(database, "SELECT 1 FROM thing WHERE key = 1"), "1");
    EXPECT_EQ(failureOf([&] { count(database); }), failure("count the things: the file is damaged"));
  }
  EXPECT_EQ(contentOf(file), damaged);
}

TEST_F(DatabaseFile, WithADamagedHeaderIsLeftAloneTogetherWithTheLogOfAProcessThatDied) {
  make(3);
  leaveLog(oldSchema);
  overwrite(file, 0, std::string(100, '\x5a'));
  const std::string before = contentOf(file);
  const std::string logBefore = contentOf(log);
  ASSERT_FALSE(logBefore.empty());
  EXPECT_EQ(failureToOpen(),
            failure("open it: the file is damaged, or is not a database, and its log " + log.string() + " is there"));
  EXPECT_EQ(contentOf(file), before);
  EXPECT_EQ(contentOf(log), logBefore);
}

TEST_F(DatabaseFile, OfANewerVersionIsLeftAloneTogetherWithTheLogOfAProcessThatDied) {
  leaveLog(newSchema);
  const std::string before = contentOf(file);
  const std::string logBefore = contentOf(log);
  ASSERT_FALSE(logBefore.empty());
  EXPECT_EQ(failureToOpen(), failure("open it: a newer version of this program wrote it"));
  EXPECT_EQ(contentOf(file), before);
  EXPECT_EQ(contentOf(log), logBefore);
}

TEST_F(DatabaseFile, ThatProvesDamagedIsLeftAloneTogetherWithTheLogOfAProcessThatDied) {
  make(100);
  leaveLog(oldSchema);
  overwrite(file, std::filesystem::file_size(file) / 2 / 4096 * 4096, std::string(4096, '\x5a'));
  const std::string before = contentOf(file);
  const std::string logBefore = contentOf(log);
  ASSERT_FALSE(logBefore.empty());
  {
    Database database(file, oldSchema);
    EXPECT_EQ(failureOf([&] { count(database); }), failure("count the things: the file is damaged"));
  }
  EXPECT_EQ(contentOf(file), before);
  EXPECT_EQ(contentOf(log), logBefore);
}

TEST_F(DatabaseFile, ThatSomebodySwitchedToAnotherLogIsSwitchedBack) {
  make(3);
  constexpr std::size_t formats = 18;  // in the header, one byte each: the formats for reading and for writing
  ASSERT_EQ(contentOf(file).substr(formats, 2), "\2\2");
  overwrite(file, formats, "\1\1");
  {
    Database database(file, oldSchema);
    EXPECT_EQ(count(database), 3);
  }
  EXPECT_EQ(contentOf(file).substr(formats, 2), "\2\2");
}

TEST_F(DatabaseFile, InADirectoryThatDoesNotExistFails) {
  const auto missing = directory / "missing/a.db";
  EXPECT_EQ(failureOf([&] { Database(missing, oldSchema); }),
            missing.string() + ": cannot open it: No such file or directory");
}

TEST_F(DatabaseFile, ThatIsADirectoryFails) {
  std::filesystem::create_directory(file);
  EXPECT_EQ(failureToOpen(), failure("open it: it is a directory"));
}

TEST_F(DatabaseFile, InADirectoryThatCantBeWrittenToFails) {
  std::filesystem::permissions(directory.path(), std::filesystem::perms(0555));
  EXPECT_EQ(inChildWithoutPrivileges([&] { return failureToOpen(); }), failure("open it: Permission denied"));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST_F(DatabaseFile, ThatCantBeWrittenToFails) {
  make(1);
  std::filesystem::permissions(file, std::filesystem::perms(0444));
  const std::string before = contentOf(file);
  EXPECT_EQ(inChildWithoutPrivileges([&] { return failureToOpen(); }), failure("open it: Permission denied"));
  EXPECT_EQ(contentOf(file), before);
}

TEST_F(DatabaseFile, ThatCantBeReadFails) {
  make(1);
  std::filesystem::permissions(file, std::filesystem::perms(0));
  EXPECT_EQ(inChildWithoutPrivileges([&] { return failureToOpen(); }), failure("open it: Permission denied"));
}

/// Without access to the directory, nobody can tell whether the file exists.
TEST_F(DatabaseFile, InADirectoryThatCantBeLookedIntoFails) {
  const auto closed = directory / "closed";
  std::filesystem::create_directory(closed);
  write(closed / "a.db", "something");
  std::filesystem::permissions(closed, std::filesystem::perms(0));
  EXPECT_EQ(inChildWithoutPrivileges([&] { return failureOf([&] { Database(closed / "a.db", oldSchema); }); }),
            (closed / "a.db").string() + ": cannot open it: Permission denied");
  std::filesystem::permissions(closed, std::filesystem::perms(0700));
  EXPECT_EQ(contentOf(closed / "a.db"), "something");
}

/// In a loop of links, even root can't tell whether the file exists.
TEST_F(DatabaseFile, BehindADirectoryThatLeadsNowhereFails) {
  std::filesystem::create_symlink("loop", directory / "loop");
  EXPECT_EQ(failureOf([&] { Database(directory / "loop/a.db", oldSchema); }),
            (directory / "loop/a.db").string() + ": cannot open it: Too many levels of symbolic links");
}

TEST_F(DatabaseFile, ThatAnotherProcessHasOpenIsRefused) {
  Database database(file, oldSchema);
  add(database);
  EXPECT_EQ(inChild([&] { return failureToOpen(); }), failure("open it: another process has locked it"));
  add(database);
  EXPECT_EQ(count(database), 2);
}

TEST_F(DatabaseFile, OnAFullDiskKeepsWhatItHad) {
  make(2);
  const std::string text = inChild([&] {
    Database database(file, oldSchema);
    add(database, 100);
    limitFileSize(100'000);
    return failureOf([&] { add(database, 1'000'000); }) + "\n" + std::to_string(count(database));
  });
  EXPECT_EQ(text, failure("add a thing: writing to the disk failed\n3"));
  Database database(file, oldSchema);
  EXPECT_EQ(count(database), 3);
  EXPECT_EQ(answerOf(database, "PRAGMA integrity_check"), "ok");
}

TEST_F(DatabaseFile, CantBeMadeOnAFullDisk) {
  const std::string text = inChild([&] {
    limitFileSize(1000);
    return failureToOpen();
  });
  EXPECT_EQ(text, failure("open it: writing to the disk failed"));
  EXPECT_EQ(filesThere(), std::set<std::string>());
  Database database(file, oldSchema);
  add(database);
  EXPECT_EQ(count(database), 1);
}

TEST_F(DatabaseFile, LeavesNothingBehindWhenItCantBeFilled) {
  const auto fails = [](Database& made) {
    add(made);
    throw StoreError("no first rows");
  };
  EXPECT_EQ(failureOf([&] { Database(file, oldSchema, fails); }), "no first rows");
  EXPECT_EQ(filesThere(), std::set<std::string>());
}

/// The mark is from an earlier start, so this one must not remove it.
TEST_F(DatabaseFile, LeavesTheMarkOfAnEarlierStartWhenItCantBeFilled) {
  write(mark, "");
  const auto fails = [](Database&) { throw StoreError("no first rows"); };
  EXPECT_EQ(failureOf([&] { Database(file, oldSchema, fails); }), "no first rows");
  EXPECT_TRUE(std::filesystem::exists(mark));
}

TEST_F(DatabaseFile, ThatIsEmptyAndClosedToTheUserIsRefusedAndNotMarked) {
  write(file, "");
  std::filesystem::permissions(file, std::filesystem::perms(0));
  std::filesystem::permissions(directory.path(), std::filesystem::perms(0777));
  EXPECT_EQ(inChildWithoutPrivileges([&] { return failureToOpen(); }), failure("open it: Permission denied"));
  EXPECT_EQ(filesThere(), std::set<std::string>({"a.db"}));
}

/// The log and the mark are beside the target of the link, not beside the link.
TEST_F(DatabaseFile, BehindALinkIsMadeWhereTheLinkLeads) {
  std::filesystem::create_directory(directory / "elsewhere");
  std::filesystem::create_symlink("elsewhere/b.db", file);
  const auto target = directory / "elsewhere/b.db";
  bool marked = false;
  {
    Database database(file, oldSchema, [&](Database&) { marked = std::filesystem::exists(target.string() + "-new"); });
    add(database);
  }
  EXPECT_TRUE(marked);
  EXPECT_FALSE(std::filesystem::exists(target.string() + "-new"));
  EXPECT_EQ(filesThere(), std::set<std::string>({"a.db", "elsewhere"}));
  Database database(file, oldSchema);
  EXPECT_EQ(count(database), 1);
}

TEST_F(DatabaseFile, BehindALinkIntoNowhereFailsAndLeavesNoMark) {
  std::filesystem::create_symlink(directory / "missing/b.db", file);
  EXPECT_EQ(failureToOpen(), failure("open it: No such file or directory"));
  EXPECT_EQ(filesThere(), std::set<std::string>({"a.db"}));
}

TEST_F(DatabaseFile, BehindALinkIsRefusedWhenItIsGoneWhileItsLogIsThere) {
  std::filesystem::create_directory(directory / "elsewhere");
  const auto target = directory / "elsewhere/b.db";
  std::filesystem::create_symlink(target, file);
  write(target.string() + "-wal", "rows");
  EXPECT_EQ(failureToOpen(), failure("open it: its log " + target.string() + "-wal is there, but not the file itself"));
  EXPECT_EQ(contentOf(target.string() + "-wal"), "rows");
  EXPECT_FALSE(std::filesystem::exists(target));
}

}  // namespace
}  // namespace virtualtv::test
