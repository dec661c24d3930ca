// SPDX-License-Identifier: MIT
// Reading cases and the table of results.
#include <gtest/gtest.h>

#include <stdexcept>

#include "window/cases/Cases.h"

namespace cases {
namespace {

template <typename Body>
std::string errorOf(Body&& body) {
  try {
    body();
  } catch (const std::runtime_error& error) {
    return error.what();
  }
  return "none";
}

std::string errorIn(const std::string& text) {
  return errorOf([&] { readCases("t.txt", text); });
}

TEST(Cases, AreReadWithWhatTheyShow) {
  const std::vector<Case> read = readCases("t.txt",
                                           "# Of sources: a remark.\n\n"
                                           "# A: success\n> .reset\n# note\n> .set x 1\n> A 1\nint 1\n\n"
                                           "# B_2: unparsed seek, too long\n> .reset\n> B_2 x\nint 0\n"
                                           "# A: missing seek\n> .reset\n> A\nint 0\n"
                                           "# A: -1, refused: by the set\n> .reset\n> A 2\nint -1\n");
  ASSERT_EQ(read.size(), 4U);
  EXPECT_EQ(read[0].command, "A");
  EXPECT_EQ(read[0].kind, Case::Kind::success);
  EXPECT_EQ(read[0].steps.size(), 3U);
  EXPECT_EQ(read[0].place(), "t.txt:7");
  EXPECT_EQ(read[1].command, "B_2");
  EXPECT_EQ(read[1].kind, Case::Kind::unparsed);
  EXPECT_EQ(read[1].parameter, "seek");
  EXPECT_EQ(read[1].title, "B_2: unparsed seek, too long");
  EXPECT_EQ(read[2].kind, Case::Kind::missing);
  EXPECT_EQ(read[3].kind, Case::Kind::result);
  EXPECT_EQ(read[3].result, -1);
}

TEST(Cases, RefuseWhatTheyAreNot) {
  EXPECT_EQ(errorIn("# none\n"), "t.txt: there are no cases");
  EXPECT_EQ(errorIn("> A\nint 1\n"), "t.txt:1: an input before the first case");
  EXPECT_EQ(errorIn("# A: success\n# B: success\n> .reset\n> A\n"), "t.txt:3: 'A: success': there is no input");
  EXPECT_EQ(errorIn("# A: success\n> .reset\n> A\n# B: success\n"), "t.txt: 'B: success': there is no input");
  EXPECT_EQ(errorIn("# A: success\n> A\n"), "t.txt:2: 'A: success': its first input is to be '> .reset'");
  EXPECT_EQ(errorIn("# A: success\n> .reset\n> AB\n"), "t.txt:3: 'A: success': its last input is to be the command");
  for (const char* kind : {"", "succes", "unparsed", "missing", "success seek", "1x", "-1 seek", "missing a b"}) {
    EXPECT_EQ(errorIn("# A: " + std::string(kind) + "\n> .reset\n> A\n"),
              "t.txt:2: 'A: " + std::string(kind) +
                  "': success, unparsed NAME, missing NAME or a number is wanted behind the command");
  }
}

TEST(ResultTable, IsReadByCommand) {
  const auto read = readResults("# c\nA\t-1 0\nB\t*\nC\tnone\n");
  ASSERT_EQ(read.size(), 3U);
  EXPECT_EQ(read.at("A").numbers, (std::set<int>{-1, 0}));
  EXPECT_FALSE(read.at("A").others);
  EXPECT_TRUE(read.at("B").others);
  EXPECT_TRUE(read.at("C").numbers.empty());
}

TEST(ResultTable, RefusesOtherLines) {
  EXPECT_EQ(errorOf([] { readResults("A\t1\nB 1\n"); }), "2: a command, a tab and numbers are wanted");
  EXPECT_EQ(errorOf([] { readResults("A\tx\n"); }), "1: 'x': a number is wanted");
  EXPECT_EQ(errorOf([] { readResults("A\t\n"); }), "1: numbers or none are wanted");
  EXPECT_EQ(errorOf([] { readResults("A\t1\nA\t2\n"); }), "2: A stands there twice");
}

}  // namespace
}  // namespace cases
