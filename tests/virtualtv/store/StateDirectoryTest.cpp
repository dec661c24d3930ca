// SPDX-License-Identifier: MIT
#include "store/StateDirectory.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <optional>

#include "virtualtv/support/Support.h"

namespace virtualtv::test {
namespace {

class StateDirectoryTest : public testing::Test {
 public:
  std::string failure(const std::filesystem::path& where, const std::string& reason) const {
    return where.string() + ": cannot use it as state directory: " + reason;
  }

  TemporaryDirectory directory;
  const std::filesystem::path path = directory / "outer/state";
  const StateDirectory::Wait atOnce = [] { return false; };
};

TEST_F(StateDirectoryTest, IsMadeForItsOwnerOnly) {
  StateDirectory state(path);
  using std::filesystem::perms;
  EXPECT_EQ(std::filesystem::status(path).permissions(), perms::owner_all);
  EXPECT_EQ(std::filesystem::status(path.parent_path()).permissions(), perms::owner_all);
  EXPECT_EQ(state.databaseFile(), path / "tv.db");
}

TEST_F(StateDirectoryTest, ThatExistsKeepsItsPermissionsAndFiles) {
  std::filesystem::create_directories(path);
  std::filesystem::permissions(path, std::filesystem::perms(0755));
  write(path / "tv.db", "content");
  StateDirectory state(path);
  EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0755));
  EXPECT_EQ(contentOf(state.databaseFile()), "content");
}

TEST_F(StateDirectoryTest, MayBeNamedFromTheWorkingDirectory) {
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(directory.path());
  std::optional<StateDirectory> state;
  state.emplace("here/./there/");
  std::filesystem::current_path(before);
  EXPECT_EQ(std::filesystem::canonical(state->databaseFile().parent_path()),
            std::filesystem::canonical(directory / "here/there"));
}

TEST_F(StateDirectoryTest, TellsASecondProcessWhichOneHoldsIt) {
  StateDirectory state(path);
  const std::string text = inChild([&] { return failureOf([&] { StateDirectory second(path, atOnce); }); });
  EXPECT_EQ(text, failure(path, "process " + std::to_string(getpid()) + " holds it"));
}

TEST_F(StateDirectoryTest, IsFreeAgainAfterwards) {
  { StateDirectory state(path); }
  EXPECT_EQ(inChild([&] { return failureOf([&] { StateDirectory second(path, atOnce); }); }), "");
}

TEST_F(StateDirectoryTest, IsHadOnceItsHolderLetsGo) {
  std::optional<StateDirectory> first(path);
  int waits = 0;
  const StateDirectory second(path, [&] {
    if (++waits == 3) first.reset();
    return true;
  });
  EXPECT_EQ(waits, 3);
  EXPECT_EQ(failureOf([&] { StateDirectory third(path, atOnce); }),
            failure(path, "process " + std::to_string(getpid()) + " holds it"));
}

TEST_F(StateDirectoryTest, IsWaitedForTwoSecondsUnlessToldOtherwise) {
  const StateDirectory state(path);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(failureOf([&] { StateDirectory second(path); }),
            failure(path, "process " + std::to_string(getpid()) + " holds it"));
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(StateDirectoryTest, IsFreeAgainWhenItsHolderDied) {
  const std::string end = inChild([&]() -> std::string {
    StateDirectory state(path);
    std::_Exit(0);
  });
  ASSERT_EQ(end, "");
  EXPECT_EQ(failureOf([&] { StateDirectory state(path); }), "");
}

TEST_F(StateDirectoryTest, NamesNobodyWhereTheHolderIsUnknown) {
  StateDirectory state(path);
  write(path / "lock", "");
  EXPECT_EQ(failureOf([&] { StateDirectory second(path, atOnce); }), failure(path, "another process holds it"));
}

TEST_F(StateDirectoryTest, HoldsTheNumberOfItsHolderAloneWhateverItHeld) {
  const std::string own = std::to_string(getpid()) + "\n";
  for (const std::string before : {"", "1\n", "12345678901234567890\n", "no number\nat all\n"}) {
    { const StateDirectory made(path); }
    write(path / "lock", before);
    const StateDirectory state(path);
    EXPECT_EQ(contentOf(path / "lock"), own) << before;
  }
}

TEST_F(StateDirectoryTest, CantBeAFile) {
  std::filesystem::create_directories(path.parent_path());
  write(path, "content");
  EXPECT_EQ(failureOf([&] { StateDirectory state(path); }), failure(path, "Not a directory"));
  EXPECT_EQ(contentOf(path), "content");
}

TEST_F(StateDirectoryTest, CantBeMadeWithoutPermission) {
  std::filesystem::permissions(directory.path(), std::filesystem::perms(0555));
  const std::string text = inChildWithoutPrivileges([&] { return failureOf([&] { StateDirectory state(path); }); });
  EXPECT_EQ(text, failure(path, "Permission denied"));
}

TEST_F(StateDirectoryTest, CantBeUsedWithoutPermissionToWrite) {
  std::filesystem::permissions(directory.path(), std::filesystem::perms(0555));
  const std::string text =
      inChildWithoutPrivileges([&] { return failureOf([&] { StateDirectory state(directory.path()); }); });
  EXPECT_EQ(text, failure(directory.path(), "Permission denied"));
}

TEST_F(StateDirectoryTest, CantBeUsedOnAFullDisk) {
  const std::string text = inChild([&] {
    limitFileSize(0);
    return failureOf([&] { StateDirectory state(path); });
  });
  EXPECT_EQ(text, failure(path, "File too large"));
}

}  // namespace
}  // namespace virtualtv::test
