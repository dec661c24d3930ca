#include "shell/Lines.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace virtualtv::shell {
namespace {

TEST(SplitLines, TheLastLineNeedsNoLineBreak) {
  EXPECT_EQ(splitLines(""), Lines{});
  EXPECT_EQ(splitLines("a"), Lines{"a"});
  EXPECT_EQ(splitLines("a\n"), Lines{"a"});
  EXPECT_EQ(splitLines("a\n\nb"), (Lines{"a", "", "b"}));
}

TEST(SplitLines, ACarriageReturnBelongsToTheLineBreak) {
  EXPECT_EQ(splitLines("a\r\nb\rc\r\n"), (Lines{"a", "b\rc"}));
}

TEST(SplitLines, SeveralCarriageReturnsAndThoseOfTheLastLineDoAsWell) {
  EXPECT_EQ(splitLines("a\r\r\nb\r\r"), (Lines{"a", "b"}));
}

TEST(SplitWords, BlanksSeparate) {
  EXPECT_EQ(splitWords("GetSource 1"), (Lines{"GetSource", "1"}));
  EXPECT_EQ(splitWords("  a \t b  "), (Lines{"a", "b"}));
  EXPECT_EQ(splitWords(""), Lines{});
  EXPECT_EQ(splitWords(" \t"), Lines{});
}

TEST(SplitWords, QuotesKeepBlanksAndEmptyWords) {
  EXPECT_EQ(splitWords("a 'b c' \"d  e\""), (Lines{"a", "b c", "d  e"}));
  EXPECT_EQ(splitWords("'' \"\" x"), (Lines{"", "", "x"}));
  EXPECT_EQ(splitWords("a'b'\"c\"d"), Lines{"abcd"});
  EXPECT_EQ(splitWords("\"it's\" '\"'"), (Lines{"it's", "\""}));
}

TEST(SplitWords, ABackslashKeepsTheNextCharacterOutsideOfQuotes) {
  EXPECT_EQ(splitWords("a\\ b \\' \\\" \\\\ \\n"), (Lines{"a b", "'", "\"", "\\", "n"}));
}

TEST(SplitWords, BetweenSingleQuotesABackslashIsACharacter) {
  EXPECT_EQ(splitWords("'a\\' 'b\\\\n'"), (Lines{"a\\", "b\\\\n"}));
}

TEST(SplitWords, BetweenDoubleQuotesABackslashKeepsOnlyTheSpecialOnes) {
  EXPECT_EQ(splitWords("\"\\\"\\\\\\$\\`\\n\\'\""), Lines{"\"\\$`\\n\\'"});
}

TEST(SplitWords, NothingIsExpandedAndNothingIsAComment) {
  EXPECT_EQ(splitWords("$HOME * ~ `x` # y ; & | > <"),
            (Lines{"$HOME", "*", "~", "`x`", "#", "y", ";", "&", "|", ">", "<"}));
}

TEST(SplitWords, AnOpenQuoteOrALoneBackslashIsAnErrorThatSaysWhere) {
  const std::pair<const char*, const char*> bad[] = {
      {"a 'b c", "no closing ' for the one at column 3"},       {"a \"b", "no closing \" for the one at column 3"},
      {"'a' \"b\\\"", "no closing \" for the one at column 5"}, {"a \\", "nothing behind the \\ at column 3"},
      {"\"a\\", "no closing \" for the one at column 1"},
  };
  for (const auto& [line, reason] : bad) {
    try {
      splitWords(line);
      ADD_FAILURE() << line;
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), reason) << line;
    }
  }
}

TEST(OneLine, LeavesPrintableTextAloneAndEscapesOther) {
  EXPECT_EQ(oneLine("a\\b é"), "a\\b é");
  EXPECT_EQ(oneLine("a\nb\x1b"), "a\\x0Ab\\x1B");
}

}  // namespace
}  // namespace virtualtv::shell
