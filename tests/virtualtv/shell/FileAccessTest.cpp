// SPDX-License-Identifier: MIT
// Which files the sessions of clients can reach: none, or the regular files beneath a directory.
#include "shell/FileAccess.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>

#include "net/FilesBeneath.h"
#include "virtualtv/support/Support.h"

namespace virtualtv::shell {
namespace {

namespace fs = std::filesystem;

std::string failureOf(const std::function<void()>& step) {
  try {
    step();
    return "";
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

class Beneath : public ::testing::Test {
 protected:
  Beneath() {
    test::write(root / "a.txt", "inside");
    fs::create_directory(root / "sub");
    test::write(root / "sub" / "b.txt", "deeper");
    test::write(folder.path() / "secret", "outside");
  }

  std::string whyNotRead(const std::string& path) const {
    return failureOf([&] { files.read(path, "NAME"); });
  }
  std::string whyNotSaved(const std::string& path) const {
    return failureOf([&] { files.save(path, "new", "NAME"); });
  }
  static fs::path made(const fs::path& directory) {
    fs::create_directory(directory);
    return directory;
  }

  test::TemporaryDirectory folder;
  fs::path root = made(folder.path() / "root");
  net::FilesBeneath files{root};
};

TEST_F(Beneath, AreToldFromDirectories) {
  using Kind = FileAccess::Kind;
  EXPECT_EQ(files.kindOf("a.txt"), Kind::file);
  EXPECT_EQ(files.kindOf("sub"), Kind::directory);
  EXPECT_EQ(files.kindOf("none"), Kind::missing);
  EXPECT_EQ(files.kindOf("../root"), Kind::file) << "which fails when it is read";
  EXPECT_EQ(allFiles().kindOf(root), Kind::directory);
  EXPECT_EQ(allFiles().kindOf(root / "none"), Kind::missing);
}

TEST_F(Beneath, AreRead) {
  EXPECT_EQ(files.read("a.txt", "NAME"), "inside");
  EXPECT_EQ(files.read("sub/b.txt", "NAME"), "deeper");
  EXPECT_EQ(files.read("sub/../a.txt", "NAME"), "inside");
  EXPECT_EQ(files.start(), fs::path());
}

TEST_F(Beneath, AreNotLeft) {
  const std::string out = ": it leads out of the directory, or over a link";
  for (const std::string& path : {std::string("../secret"), std::string("sub/../../secret"),
                                  (folder.path() / "secret").string(), (root / "a.txt").string()}) {
    EXPECT_EQ(whyNotRead(path), "cannot read NAME" + out) << path;
    EXPECT_EQ(whyNotSaved(path), "cannot write NAME" + out) << path;
  }
  EXPECT_EQ(test::contentOf(folder.path() / "secret"), "outside");
}

TEST_F(Beneath, FollowNoLinks) {
  fs::create_symlink(folder.path() / "secret", root / "away");
  fs::create_symlink("a.txt", root / "near");
  fs::create_directory_symlink(folder.path(), root / "up");
  for (const char* const path : {"away", "near", "up/secret", "up/new"}) {
    EXPECT_NE(whyNotRead(path), "") << path;
    EXPECT_NE(whyNotSaved(path), "") << path;
  }
  EXPECT_EQ(test::contentOf(folder.path() / "secret"), "outside");
  EXPECT_FALSE(fs::exists(folder.path() / "new"));
}

TEST_F(Beneath, AreRegularFilesAlone) {
  ASSERT_EQ(::mkfifo((root / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(whyNotRead("pipe"), "cannot read NAME: not a regular file") << "nor is it waited for";
  EXPECT_EQ(whyNotRead("sub"), "cannot read NAME: not a regular file");
  EXPECT_EQ(whyNotRead("none"), "cannot read NAME: No such file or directory");
  EXPECT_NE(whyNotSaved("sub"), "");
  EXPECT_NE(whyNotSaved("pipe"), "");
}

TEST_F(Beneath, AreMadeAndNeverOverwritten) {
  files.save("sub/new.json", "content", "NAME");
  EXPECT_EQ(test::contentOf(root / "sub" / "new.json"), "content");
  EXPECT_EQ(whyNotSaved("sub/new.json"), "cannot write NAME: File exists");
  EXPECT_EQ(whyNotSaved("a.txt"), "cannot write NAME: File exists");
  EXPECT_EQ(test::contentOf(root / "a.txt"), "inside");
  EXPECT_EQ(whyNotSaved("none/new"), "cannot write NAME: No such file or directory");
}

TEST_F(Beneath, NeedTheirDirectory) {
  EXPECT_EQ(failureOf([&] { const net::FilesBeneath none(root / "none"); }),
            "cannot read " + (root / "none").string() + ": No such file or directory");
  EXPECT_NE(failureOf([&] { const net::FilesBeneath file(root / "a.txt"); }), "");
}

TEST(NoFiles, AreReached) {
  const std::string reason = "clients reach no files unless the server is started with --files";
  EXPECT_EQ(failureOf([] { noFiles().read("a", "a"); }), "cannot read a: " + reason);
  EXPECT_EQ(failureOf([] { noFiles().save("a", "", "a"); }), "cannot write a: " + reason);
}

}  // namespace
}  // namespace virtualtv::shell
