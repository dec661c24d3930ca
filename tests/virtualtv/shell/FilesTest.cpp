// SPDX-License-Identifier: MIT
#include "shell/Files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdio>
#include <memory>

#include "virtualtv/shell/Support.h"

namespace virtualtv::shell {
namespace {

namespace fs = std::filesystem;

Lines namesIn(const fs::path& folder) {
  Lines names;
  for (const auto& entry : fs::directory_iterator(folder)) names.push_back(entry.path().filename().string());
  return names;
}

/// Writes a file. @return its path.
fs::path made(const fs::path& file, const std::string& content) {
  test::write(file, content);
  return file;
}

using Stream = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

Stream opened(const fs::path& file) {
  return {std::fopen(file.c_str(), "rb"), std::fclose};
}

std::string reasonOf(const std::function<void()>& act) {
  try {
    act();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "nothing was thrown";
}

TEST(ReadFile, GivesEveryByte) {
  const TemporaryDirectory folder;
  std::string content;
  for (int byte = 0; byte < 200000; ++byte) content += static_cast<char>(byte);
  EXPECT_EQ(readFile(made(folder / "f", content)), content);
  EXPECT_EQ(readFile(made(folder / "e", "")), "");
}

TEST(ReadFile, SaysWhatCantBeRead) {
  const TemporaryDirectory folder;
  EXPECT_EQ(reasonOf([&] { readFile(folder / "none"); }),
            "cannot read " + (folder / "none").string() + ": No such file or directory");
  EXPECT_EQ(reasonOf([&] { readFile(folder.path()); }), "cannot read " + folder.path().string() + ": Is a directory");
  EXPECT_EQ(reasonOf([&] { readFile(folder.path(), "it"); }), "cannot read it: Is a directory");
}

TEST(ReadFile, EndsAtALimit) {
  EXPECT_EQ(reasonOf([&] { readFile("/dev/zero"); }), "cannot read /dev/zero: it has more than 256 MB");
  const Stream endless = opened("/dev/zero");
  EXPECT_EQ(reasonOf([&] { readStream(endless.get(), "standard input"); }),
            "cannot read standard input: it has more than 256 MB");
}

TEST(ReadFile, MayReachTheLimit) {
  const TemporaryDirectory folder;
  const fs::path file = made(folder / "f", "");
  fs::resize_file(file, mostRead);
  EXPECT_EQ(readFile(file).size(), mostRead);
  fs::resize_file(file, mostRead + 1);
  EXPECT_EQ(reasonOf([&] { readFile(file); }), "cannot read " + file.string() + ": it has more than 256 MB");
}

TEST(ReadStream, GivesWhatIsLeft) {
  const TemporaryDirectory folder;
  const Stream stream = opened(made(folder / "f", "first\nrest\n\xFF"));
  std::string first;
  EXPECT_TRUE(readLine(stream.get(), "it", 10, first));
  EXPECT_EQ(readStream(stream.get(), "it"), "rest\n\xFF");
  EXPECT_EQ(readStream(stream.get(), "it"), "");
}

TEST(ReadStream, SaysWhatCantBeRead) {
  const TemporaryDirectory folder;
  const Stream stream = opened(folder.path());
  EXPECT_EQ(reasonOf([&] { readStream(stream.get(), "it"); }), "cannot read it: Is a directory");
}

TEST(ReadLine, GivesOneLineAfterTheOther) {
  const TemporaryDirectory folder;
  const Stream stream = opened(made(folder / "f", std::string("a\n\nb\0c\r\nd", 9)));
  Lines lines;
  for (std::string line; readLine(stream.get(), "it", 100, line);) lines.push_back(line);
  EXPECT_EQ(lines, (Lines{"a", "", std::string("b\0c\r", 4), "d"}));
}

TEST(ReadLine, CutsALineThatIsTooLongAndGoesOnBehindIt) {
  const TemporaryDirectory folder;
  const Stream stream = opened(made(folder / "f", "abc\nabcd\nabcdefgh\nx\nabcdefgh"));
  Lines lines;
  for (std::string line; readLine(stream.get(), "it", 3, line);) lines.push_back(line);
  EXPECT_EQ(lines, (Lines{"abc", "abcd", "abcd", "x", "abcd"}));
}

TEST(ReadLine, EndsAtALimit) {
  const TemporaryDirectory folder;
  const Stream endless = opened("/dev/zero");
  std::string line;
  EXPECT_EQ(reasonOf([&] { readLine(endless.get(), "it:1", 3, line); }), "cannot read it:1: it has more than 256 MB");
  EXPECT_LT(line.capacity(), 100U);
}

TEST(ReadLine, SaysWhatCantBeRead) {
  const TemporaryDirectory folder;
  const Stream stream = opened(folder.path());
  std::string line;
  EXPECT_EQ(reasonOf([&] { readLine(stream.get(), "it:1", 3, line); }), "cannot read it:1: Is a directory");
}

TEST(ReplaceFile, PutsTheNewContentInPlaceAndLeavesNothingElseBehind) {
  const TemporaryDirectory folder;
  const fs::path file = made(folder / "f", "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
  replaceFile(file, "new");
  EXPECT_EQ(test::contentOf(folder / "f"), "new");
  EXPECT_EQ(namesIn(folder.path()), Lines{"f"});
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::others_read);
}

TEST(ReplaceFile, KeepsALinkALink) {
  const TemporaryDirectory folder;
  made(folder / "f", "old");
  fs::create_symlink("f", folder / "link");
  replaceFile(folder / "link", "new");
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(test::contentOf(folder / "f"), "new");
}

TEST(ReplaceFile, DoesNotMakeAFile) {
  const TemporaryDirectory folder;
  EXPECT_EQ(reasonOf([&] { replaceFile(folder / "none", "new"); }),
            "cannot write " + (folder / "none").string() + ": No such file or directory");
  EXPECT_EQ(namesIn(folder.path()), Lines{});
}

TEST(ReplaceFile, LeavesWhatIsNoRegularFileAlone) {
  const TemporaryDirectory folder;
  fs::create_directory(folder / "d");
  EXPECT_EQ(reasonOf([&] { replaceFile(folder / "d", "new"); }),
            "cannot write " + (folder / "d").string() + ": not a regular file");
  EXPECT_TRUE(fs::is_directory(folder / "d"));
  EXPECT_EQ(reasonOf([] { replaceFile("/dev/null", "new"); }), "cannot write /dev/null: not a regular file");
}

TEST(SaveFile, MakesAFileWithThePermissionsOfNewOnes) {
  const TemporaryDirectory folder;
  const mode_t before = ::umask(027);
  saveFile(folder / "f", "new");
  ::umask(before);
  EXPECT_EQ(test::contentOf(folder / "f"), "new");
  EXPECT_EQ(fs::status(folder / "f").permissions(),
            fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
  EXPECT_EQ(namesIn(folder.path()), Lines{"f"});
}

TEST(SaveFile, ReplacesAFileThatIsThere) {
  const TemporaryDirectory folder;
  const fs::path file = made(folder / "f", "old");
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink("f", folder / "link");
  saveFile(folder / "link", "new");
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(test::contentOf(file), "new");
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST(SaveFile, SaysWhatCantBeWrittenAndLeavesNothingBehind) {
  const TemporaryDirectory folder;
  EXPECT_EQ(reasonOf([&] { saveFile(folder / "no/f", "x"); }),
            "cannot write " + (folder / "no/f").string() + ": No such file or directory");
  fs::create_symlink("nowhere", folder / "link");
  EXPECT_EQ(reasonOf([&] { saveFile(folder / "link", "x"); }),
            "cannot write " + (folder / "link").string() + ": No such file or directory");
  EXPECT_EQ(namesIn(folder.path()), Lines{"link"});
}

TEST(WriteFile, MakesOrOverwrites) {
  const TemporaryDirectory folder;
  writeFile(folder / "f", "one");
  writeFile(folder / "f", "2");
  EXPECT_EQ(test::contentOf(folder / "f"), "2");
  EXPECT_EQ(reasonOf([&] { writeFile(folder / "no/f", "x"); }),
            "cannot write " + (folder / "no/f").string() + ": No such file or directory");
}

TEST(WriteFile, AFullDiskIsAnError) {
  EXPECT_EQ(reasonOf([] { writeFile("/dev/full", "x"); }), "cannot write /dev/full: No space left on device");
}

}  // namespace
}  // namespace virtualtv::shell
