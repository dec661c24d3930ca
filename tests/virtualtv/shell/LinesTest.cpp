// SPDX-License-Identifier: MIT
#include "shell/Lines.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "text/Units.h"

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

TEST(SplitWords, BehindADollarSingleQuotesHaveEscapes) {
  EXPECT_EQ(splitWords(R"($'a b\n\r\t\'\"\\' x$'\x41\102'y $'')"), (Lines{"a b\n\r\t'\"\\", "xABy", ""}));
  EXPECT_EQ(splitWords(R"($'\xfF\377\000')"), (Lines{std::string("\xFF\xFF\0", 3)}));
  EXPECT_EQ(splitWords(R"("$'\n'" \$'\n' '$'\n $"a" $)"), (Lines{"$'\\n'", "$\\n", "$n", "$a", "$"}));
}

TEST(SplitWords, NothingIsExpandedAndNothingIsAComment) {
  EXPECT_EQ(splitWords("$HOME * ~ `x` # y ; & | > <"),
            (Lines{"$HOME", "*", "~", "`x`", "#", "y", ";", "&", "|", ">", "<"}));
}

TEST(SplitWords, AnOpenQuoteOrALoneBackslashIsAnErrorThatSaysWhere) {
  const std::pair<const char*, const char*> bad[] = {
      {"a 'b c", "no closing ' for the one at column 3"},       {"a \"b", "no closing \" for the one at column 3"},
      {"'a' \"b\\\"", "no closing \" for the one at column 5"}, {"a \\", "nothing behind the \\ at column 3"},
      {"\"a\\", "no closing \" for the one at column 1"},       {"a $'b\\'", "no closing ' for the one at column 3"},
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

TEST(SplitWords, AnUnknownEscapeIsAnErrorThatSaysWhere) {
  for (const char* bad : {"\\q", "\\x4", "\\x4g", "\\12", "\\400", "\\8", "\\x-1", "\\ "}) {
    try {
      splitWords("a $'b" + std::string(bad) + "'");
      ADD_FAILURE() << bad;
    } catch (const std::invalid_argument& error) {
      EXPECT_STREQ(error.what(), "an unknown escape in $'...' at column 6") << bad;
    }
  }
}

TEST(AsWord, IsReadAsTheTextAndCanBeShown) {
  for (const std::string text : {"plain", "a b", "it's", "say \"x\"", "back\\slash", "\\x41", "a\nb", "\t", "'\r\\x\\",
                                 "\x01"
                                 "7",
                                 "\xFF\xC3\xA9", "\xC2\x85", "\xE6\x97\xA5", "$'a'", "", "#"}) {
    const std::string word = text::asWord(text);
    EXPECT_EQ(splitWords("x=" + word), Lines{"x=" + text}) << word;
    EXPECT_EQ(oneLine(word), word);
  }
  EXPECT_EQ(text::asWord("a\nb'\\x\xFF\x01"), R"($'a\nb\'\134x\377\001')");
  EXPECT_EQ(text::asWord("it's"), R"('it'\''s')");
}

TEST(OneLine, LeavesPrintableTextAloneAndEscapesOtherBytes) {
  EXPECT_EQ(oneLine("a\\b \\u0041 é"), "a\\b \\u0041 é");
  EXPECT_EQ(oneLine("a\nb\x1b\xff"), "a\\x0Ab\\x1B\\xFF");
}

TEST(OneLine, WritesABackslashTheSameWhateverElseTheTextHas) {
  for (const std::string text : {"\\", "a\\b", "\\\\", "{\"a\": \"\\/\"}"}) {
    EXPECT_EQ(oneLine(text), text);
    EXPECT_EQ(oneLine(text + "\n"), text + "\\x0A");
  }
}

TEST(OneLine, ShowsABackslashThatWouldReadAsAnEscapeAsOne) {
  EXPECT_EQ(oneLine("a\\x0A"), "a\\x5Cx0A");
  EXPECT_EQ(oneLine("a\\\\x"), "a\\\\x5Cx");
  EXPECT_EQ(oneLine("a\\x0A\n"), "a\\x5Cx0A\\x0A");
}

TEST(SplitHalfTyped, TellsTheWordsInFrontAndTheOneThatIsTyped) {
  const HalfTyped typed = splitHalfTyped("a 'b c' d\\ e");
  EXPECT_EQ(typed.words, (Lines{"a", "b c"}));
  EXPECT_EQ(typed.last, "d e");
  EXPECT_EQ(typed.quote, '\0');
  EXPECT_FALSE(typed.escape);
  EXPECT_EQ(splitHalfTyped("a b ").words, (Lines{"a", "b"}));
  EXPECT_EQ(splitHalfTyped("a b ").last, "");
  EXPECT_EQ(splitHalfTyped("").words, Lines{});
}

TEST(SplitHalfTyped, TellsWhatIsOpen) {
  EXPECT_EQ(splitHalfTyped("a 'b c").last, "b c");
  EXPECT_EQ(splitHalfTyped("a 'b c").quote, '\'');
  EXPECT_EQ(splitHalfTyped("a \"b \\\"c").last, "b \"c");
  EXPECT_EQ(splitHalfTyped("a \"b \\\"c").quote, '"');
  EXPECT_EQ(splitHalfTyped("a $'b\\n").last, "b\n");
  EXPECT_EQ(splitHalfTyped("a $'b\\n").quote, '$');
  EXPECT_EQ(splitHalfTyped("a $'b\\q").last, "b\\q");
  EXPECT_TRUE(splitHalfTyped("a $'b\\").escape);
  for (const char* line : {"a\\", "\"a\\"}) EXPECT_TRUE(splitHalfTyped(line).escape) << line;
  for (const char* line : {"a\\\\", "\"a\\\\", "\"a\\b", "'a\\"}) EXPECT_FALSE(splitHalfTyped(line).escape) << line;
}

TEST(AsTyped, IsReadAsTheTextItself) {
  for (const std::string text : {"plain", "a b\tc", "it's", "say \"$x\" `y` \\z", "\\", "#"}) {
    EXPECT_EQ(splitWords("x" + asTyped(text)), Lines{"x" + text});
    EXPECT_EQ(splitWords("x'" + asTyped(text, '\'') + "'"), Lines{"x" + text});
    EXPECT_EQ(splitWords("x\"" + asTyped(text, '"') + "\""), Lines{"x" + text});
    EXPECT_EQ(splitWords("x$'" + asTyped(text, '$') + "'"), Lines{"x" + text});
  }
  EXPECT_EQ(asTyped("sp ace/it's"), "sp\\ ace/it\\'s");
  EXPECT_EQ(asTyped("sp ace/$it's", '"'), "sp ace/\\$it's");
}

}  // namespace
}  // namespace virtualtv::shell
