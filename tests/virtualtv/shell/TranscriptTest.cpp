// SPDX-License-Identifier: MIT
#include "shell/Transcript.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace virtualtv::shell {
namespace {

TEST(TranscriptText, HasInputsWhatTheyPrintAndRemarks) {
  const Transcript transcript = readTranscript("t", "# head\n\n> A 1\nint 1\n# tail\n \n>+ B\nascii |\n| x\n|\n> C\n");
  EXPECT_EQ(transcript.opening, (Lines{"# head", ""}));
  ASSERT_EQ(transcript.steps.size(), 3U);
  EXPECT_EQ(transcript.steps[0].line, 3);
  EXPECT_EQ(transcript.steps[0].input, "> A 1");
  EXPECT_EQ(transcript.steps[0].output, Lines{"int 1"});
  EXPECT_EQ(transcript.steps[0].remarks, (Lines{"# tail", " "}));
  EXPECT_EQ(transcript.steps[1].line, 7);
  EXPECT_EQ(transcript.steps[1].output, (Lines{"ascii |", "| x", "|"}));
  EXPECT_EQ(transcript.steps[2].output, Lines{});
}

TEST(TranscriptText, HasScenesBetweenResetsNamedByTheCommentAbove) {
  const std::vector<Scene> scenes = scenesIn(
      readTranscript("t", "# head\n> X\n# a\n#  A\n\n> .reset\n> B\nint 1\n> A 1\n> .reset\n# C\n> .reset\n> C\n"));
  ASSERT_EQ(scenes.size(), 3U);
  EXPECT_EQ(scenes[0].name, "A");
  ASSERT_EQ(scenes[0].steps.size(), 2U);
  EXPECT_EQ(scenes[0].steps[0].input, "> B");
  EXPECT_EQ(scenes[0].steps[0].output, Lines{"int 1"});
  EXPECT_EQ(scenes[0].steps[1].line, 9);
  EXPECT_EQ(scenes[0].steps[1].remarks, Lines{});
  EXPECT_EQ(scenes[1].name, "");
  EXPECT_EQ(scenes[1].steps.size(), 0U);
  EXPECT_EQ(scenes[2].name, "C");
}

TEST(TranscriptText, IsWrittenAsItWasRead) {
  for (const std::string text :
       {"", "# only a remark\n", "> A\n", "# a\n\n> A\nint 1\n\n\n# b\n> B\n> C\nempty\n# c\n"}) {
    EXPECT_EQ(writeTranscript(readTranscript("t", text)), text);
  }
}

TEST(TranscriptText, WithCarriageReturnsHasTheSameInputsOnceItIsWrittenWithoutThem) {
  for (const std::string text : {"> A\r\r\n# b\r\r\n", "> A\n# b\r\r"}) {
    EXPECT_EQ(writeTranscript(readTranscript("t", text)), "> A\n# b\n");
  }
}

TEST(TranscriptText, KeepsAByteOrderMarkThatIsNoPartOfTheFirstLine) {
  const Transcript transcript = readTranscript("t", "\xEF\xBB\xBF> A\nint 1\n");
  EXPECT_EQ(transcript.opening, Lines{});
  EXPECT_EQ(transcript.steps.at(0).input, "> A");
  for (const std::string text : {"> A\n", "# a\n> A\n", "\n> A\n", ""}) {
    EXPECT_EQ(writeTranscript(readTranscript("t", "\xEF\xBB\xBF" + text)), "\xEF\xBB\xBF" + text);
  }
}

TEST(TranscriptText, AByteOrderMarkElsewhereIsPartOfItsLine) {
  const Transcript transcript = readTranscript("t", "> A\n\xEF\xBB\xBF# no remark\n");
  EXPECT_EQ(transcript.steps.at(0).output, Lines{"\xEF\xBB\xBF# no remark"});
}

TEST(TranscriptText, TheLastLineNeedsNoLineBreak) {
  const Transcript transcript = readTranscript("t", "> A\nint 1");
  EXPECT_EQ(transcript.steps.at(0).output, Lines{"int 1"});
  EXPECT_EQ(writeTranscript(transcript), "> A\nint 1\n");
}

TEST(TranscriptText, IsMadeOfLinesInUtf8WithoutNullCharacters) {
  for (const char* line : {"", "> A",
                           "S\xC3\xBC"
                           "d \xEF\xBF\xBD",
                           "\x01\t\x7f"})
    EXPECT_TRUE(isText(line)) << line;
  for (const char* line : {"\xff\xfe x",
                           "S\xfc"
                           "d",
                           "\xED\xA0\x80", "\xC0\x80"})
    EXPECT_FALSE(isText(line)) << line;
  EXPECT_FALSE(isText(std::string("a\0b", 3)));
}

TEST(TranscriptText, TakesInputsAndCommentsUpToALength) {
  const std::string longest = "> " + std::string(longestLine - 2, 'a');
  EXPECT_EQ(flawOf(longest), "");
  EXPECT_EQ(flawOf(longest + "a"), "the line has more than 1 MB");
  EXPECT_EQ(readTranscript("t", longest + "\n").steps.at(0).input, longest);
  EXPECT_THROW(readTranscript("t", longest + "a\n"), std::runtime_error);
  EXPECT_THROW(readTranscript("t", "#" + longest + "\n"), std::runtime_error);
}

TEST(TranscriptText, TakesOutputOfAnyLength) {
  const std::string output = "| " + std::string(longestLine, 'a');
  EXPECT_EQ(readTranscript("t", "> A\n" + output + "\n").steps.at(0).output, Lines{output});
}

TEST(TranscriptText, HasTheStartOfALineThatItCantTakeInAComment) {
  EXPECT_EQ(remarkOn("a flaw", "\xFFx"), "# a flaw: \\xFFx");
  EXPECT_EQ(remarkOn("a flaw", std::string(200, 'a')), "# a flaw: " + std::string(200, 'a'));
  EXPECT_EQ(remarkOn("a flaw", std::string(201, 'a')), "# a flaw: " + std::string(200, 'a') + " ...");
}

TEST(TranscriptText, RefusesLinesThatCantStandThere) {
  const std::pair<std::string, const char*> bad[] = {
      {"int 1\n", "t:1: output before the first '>' line"},
      {"# a\n\nint 1\n> A\n", "t:3: output before the first '>' line"},
      {"> A\nint 1\n\nint 2\n", "t:4: output must directly follow its '>' line"},
      {"> A\n# c\nint 2\n", "t:3: output must directly follow its '>' line"},
      {std::string("> A\nb\0c\n", 8), "t:2: not a text in UTF-8"},
      {"> A\n# \xff\n", "t:2: not a text in UTF-8"},
      {"> A\nint 1\n> " + std::string(longestLine, 'B') + "\n> C\n", "t:3: the line has more than 1 MB"},
  };
  for (const auto& [text, reason] : bad) {
    try {
      readTranscript("t", text);
      ADD_FAILURE() << reason;
    } catch (const std::runtime_error& error) {
      EXPECT_STREQ(error.what(), reason);
    }
  }
}

}  // namespace
}  // namespace virtualtv::shell
