// SPDX-License-Identifier: MIT
#include "shell/Table.h"

#include <gtest/gtest.h>

namespace virtualtv::shell {
namespace {

TEST(Table, AlignsItsColumns) {
  EXPECT_EQ(table({{"A", "B"}, {"long", "x"}, {"ö", "y"}}), (Lines{"  A     B", "  long  x", "  ö     y"}));
}

TEST(Table, ACellWithNothingBehindItWidensNoColumn) {
  EXPECT_EQ(table({{"A", "B"}, {"much longer"}, {"", "x"}}), (Lines{"  A  B", "  much longer", "     x"}));
}

TEST(Table, BreaksALastColumnThatHasHalfTheWidthOrMore) {
  EXPECT_EQ(table({{"A", "B"}, {"ab", "one two three"}}, 16), (Lines{"  A   B", "  ab  one two", "      three"}));
}

TEST(Table, PutsALastColumnThatHasLessBelowTheOthers) {
  EXPECT_EQ(table({{"A", "B", "C"}, {"abcd", "x", "one two three"}}, 16),
            (Lines{"  A  B", "      C", "  abcd  x", "      one two", "      three"}));
  EXPECT_EQ(table({{"  abcdefgh", "one two three"}}, 20), (Lines{"    abcdefgh", "        one two", "        three"}));
}

TEST(Table, KeepsARowTogetherThatStandsBelowItsFirstCell) {
  EXPECT_EQ(table({{"abc de fgh"}, {"", "one"}, {"abcdefghi", "two"}}, 10),
            (Lines{"  abc de", "      fgh", "      one", "  abcdefghi", "      two"}));
}

TEST(Table, IsAsWideAsItComesWithoutAWidth) {
  const std::string text(300, 'x');
  EXPECT_EQ(table({{"a", text + " " + text}}), Lines{"  a  " + text + " " + text});
}

TEST(Wrapped, BreaksBetweenWordsAndIndentsTheRest) {
  EXPECT_EQ(wrapped("one two three four", 9, 2), (Lines{"one two", "  three", "  four"}));
  EXPECT_EQ(wrapped("one two", 7, 2), Lines{"one two"});
  EXPECT_EQ(wrapped("äöü two", 7, 2), Lines{"äöü two"});
}

TEST(Wrapped, LeavesWordsWholeThatAreTooLong) {
  EXPECT_EQ(wrapped("onetwothree four", 5, 1), (Lines{"onetwothree", " four"}));
  EXPECT_EQ(wrapped("  onetwothree", 5, 1), Lines{"  onetwothree"});
}

TEST(Wrapped, DropsNoMoreThanBlanksAtABreak) {
  EXPECT_EQ(wrapped("one   two  three", 8, 0), (Lines{"one", "two", "three"}));
  EXPECT_EQ(wrapped("one     ", 4, 0), Lines{"one     "});
  EXPECT_EQ(wrapped("", 4, 0), Lines{""});
}

TEST(Remark, IsMadeOfCommentsThatFit) {
  EXPECT_EQ(remark("one two three", 80), Lines{"# one two three"});
  EXPECT_EQ(remark("one two three", 0), Lines{"# one two three"});
  EXPECT_EQ(remark("one two three", 9), (Lines{"# one two", "# three"}));
  EXPECT_EQ(remark("one two three", 1), (Lines{"# one", "# two", "# three"}));
}

}  // namespace
}  // namespace virtualtv::shell
