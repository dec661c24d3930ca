// SPDX-License-Identifier: MIT
#include "shell/Diff.h"

#include <gtest/gtest.h>

#include <random>

namespace virtualtv::shell {
namespace {

using Kind = DiffLine::Kind;

std::string diffOf(const Lines& before, const Lines& after) {
  Diff diff;
  compare(diff, before, after);
  return unified(diff, "a", "b");
}

Lines textOf(const Diff& diff, Kind other) {
  Lines lines;
  for (const DiffLine& line : diff) {
    if (line.kind != other) lines.push_back(line.text);
  }
  return lines;
}

TEST(UnifiedDiff, IsEmptyWhereNothingDiffers) {
  EXPECT_EQ(diffOf({}, {}), "");
  EXPECT_EQ(diffOf({"x"}, {"x"}), "");
}

TEST(UnifiedDiff, ShowsWhatWasRemovedBeforeWhatWasAdded) {
  EXPECT_EQ(diffOf({"1", "old", "3"}, {"1", "new", "3"}), "--- a\n+++ b\n@@ -1,3 +1,3 @@\n 1\n-old\n+new\n 3\n");
}

TEST(UnifiedDiff, CountsLinesOfTextsThatAreEmptyOnOneSide) {
  EXPECT_EQ(diffOf({}, {"x"}), "--- a\n+++ b\n@@ -0,0 +1,1 @@\n+x\n");
  EXPECT_EQ(diffOf({"x"}, {}), "--- a\n+++ b\n@@ -1,1 +0,0 @@\n-x\n");
}

TEST(UnifiedDiff, HasThreeLinesOfContextAndAHunkForEachPlace) {
  Lines before;
  for (int line = 1; line <= 30; ++line) before.push_back(std::to_string(line));
  Lines after = before;
  after[4] = "five";
  after.insert(after.begin() + 20, "new");
  EXPECT_EQ(diffOf(before, after),
            "--- a\n+++ b\n"
            "@@ -2,7 +2,7 @@\n 2\n 3\n 4\n-5\n+five\n 6\n 7\n 8\n"
            "@@ -18,6 +18,7 @@\n 18\n 19\n 20\n+new\n 21\n 22\n 23\n");
}

TEST(UnifiedDiff, JoinsHunksThatTouch) {
  Lines before;
  for (int line = 1; line <= 12; ++line) before.push_back(std::to_string(line));
  Lines after = before;
  after[2] = "three";
  after[8] = "nine";
  const std::string diff = diffOf(before, after);
  EXPECT_EQ(diff.find("@@ -", diff.find("@@ -") + 1), std::string::npos) << diff;
}

TEST(Compare, KeepsBothTextsWhateverTheyAre) {
  std::mt19937 random(7);  // NOLINT: the same texts on every run
  for (int round = 0; round < 300; ++round) {
    Lines before;
    Lines after;
    const auto draw = [&](unsigned limit) { return static_cast<unsigned>(random() % limit); };
    for (unsigned count = draw(12); count > 0; --count) before.push_back(std::to_string(draw(4)));
    for (unsigned count = draw(12); count > 0; --count) after.push_back(std::to_string(draw(4)));
    Diff diff;
    compare(diff, before, after);
    ASSERT_EQ(textOf(diff, Kind::added), before);
    ASSERT_EQ(textOf(diff, Kind::removed), after);
  }
}

TEST(Compare, ChangesAsFewLinesAsItCan) {
  Diff diff;
  compare(diff, {"a", "b", "c", "d"}, {"b", "x", "d"});
  EXPECT_EQ(diff.size(), 5U);
}

TEST(Compare, HugeGroupsAreReplacedAsAWhole) {
  Lines before;
  Lines after;
  for (int line = 0; line < 5000; ++line) {
    before.push_back("a" + std::to_string(line));
    after.push_back("b" + std::to_string(line));
  }
  Diff diff;
  compare(diff, before, after);
  EXPECT_EQ(textOf(diff, Kind::added), before);
  EXPECT_EQ(textOf(diff, Kind::removed), after);
}

}  // namespace
}  // namespace virtualtv::shell
