// SPDX-License-Identifier: MIT
#include "framework/Log.h"

#include <gtest/gtest.h>
#include <pthread.h>

#include <array>
#include <new>
#include <string>
#include <vector>

#include "kel/CKELDebug.h"

namespace virtualtv::framework {
namespace {

using kel::CKELDebug;

constexpr const char* location = "[KEL][%s(%d)] ";
constexpr const char* banner = "\033[2;31;42m !!!!ERROR!!!![%s][%s][%d] \033[0m";

class LogTest : public ::testing::Test {
 protected:
  LogTest() { listenUpTo(3); }

  void listenUpTo(int level) {
    listening = listenToLog(level, [this](const LogLine& line) { lines.push_back(line); });
  }

  std::vector<LogLine> lines;
  notify::Subscription listening;
};

TEST_F(LogTest, HoldsTheLocationLineBackForItsMessage) {
  CKELDebug::PrintLog(2, 3, location, "GetSource", 120);
  EXPECT_TRUE(lines.empty());
  CKELDebug::PrintLog(2, 3, "source = [%d]", 5);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].level, 3);
  EXPECT_EQ(lines[0].function, "GetSource");
  EXPECT_EQ(lines[0].place, 120);
  EXPECT_EQ(lines[0].message.format(), "source = [%d]");
  EXPECT_EQ(lines[0].message.text(), "source = [5]");
}

TEST_F(LogTest, AMessageWithoutLocationLineHasNoFunction) {
  CKELDebug::PrintLog(2, 0, location, "First", 1);
  CKELDebug::PrintLog(2, 0, "one");
  CKELDebug::PrintLog(2, 0, "two");
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].function, "First");
  EXPECT_EQ(lines[1].function, "");
  EXPECT_EQ(lines[1].place, 0);
}

TEST_F(LogTest, LetsOnlyMessagesUpToTheLevelThrough) {
  const std::vector<std::vector<int>> expected{{}, {0}, {0}, {0}, {0, 3}};
  for (int level = -1; level <= 3; ++level) {
    lines.clear();
    listenUpTo(level);
    EXPECT_EQ(logLevel(), level);
    CKELDebug::PrintLog(2, 0, "routine");
    CKELDebug::PrintLog(2, 3, "information");
    std::vector<int> levels;
    for (const LogLine& line : lines) levels.push_back(line.level);
    EXPECT_EQ(levels, expected[static_cast<std::size_t>(level + 1)]) << level;
  }
}

TEST_F(LogTest, AFilteredMessageNeitherReadsItsFormatNorItsArguments) {
  listenUpTo(0);
  const char* nowhere = reinterpret_cast<const char*>(1);  // reading it would crash
  CKELDebug::PrintLog(2, 3, nowhere, 1);
  CKELDebug::PrintLog(2, 3, "%s", nowhere);
  EXPECT_TRUE(lines.empty());
}

TEST_F(LogTest, NobodyNeedsToListen) {
  listening.end();
  EXPECT_EQ(logLevel(), -1);
  CKELDebug::PrintLog(2, 0, "unheard");
  EXPECT_TRUE(lines.empty());
}

TEST_F(LogTest, EachListenerHearsUpToItsOwnLevel) {
  std::vector<int> few;
  {
    const auto second = listenToLog(0, [&](const LogLine& line) { few.push_back(line.level); });
    EXPECT_EQ(logLevel(), 3);
    CKELDebug::PrintLog(2, 0, "routine");
    CKELDebug::PrintLog(2, 3, "information");
    listening.end();
    EXPECT_EQ(logLevel(), 0);
    CKELDebug::PrintLog(2, 0, "routine");
  }
  CKELDebug::PrintLog(2, 0, "unheard");
  EXPECT_EQ(few, (std::vector<int>{0, 0}));
  EXPECT_EQ(lines.size(), 2U);
}

TEST_F(LogTest, RendersTextsOfAnyLength) {
  const std::string longText(100000, 'x');
  CKELDebug::PrintLog(2, 0, "<%s>", longText.c_str());
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message.text(), "<" + longText + ">");
  EXPECT_EQ(lines[0].message.masked(), lines[0].message.text());
}

TEST_F(LogTest, AMessageKeepsWhatItWasGiven) {
  std::string format = "[%s]";
  std::string text = "then";
  CKELDebug::PrintLog(2, 0, format.c_str(), text.c_str());
  format.replace(0, 1, "<");
  text = "now!";
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message.text(), "[then]");
}

TEST_F(LogTest, AFormatIsReadAnewWhereAnotherOneStoodBefore) {
  std::string format = "%d of %s";
  CKELDebug::PrintLog(2, 0, format.c_str(), 1, "two");
  format = "%s or %d";
  CKELDebug::PrintLog(2, 0, format.c_str(), "one", 2);
  CKELDebug::PrintLog(2, 0, format.c_str(), "three", 4);
  format = "%d of %s";
  CKELDebug::PrintLog(2, 0, format.c_str(), 5, "six");
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0].message.text(), "1 of two");
  EXPECT_EQ(lines[1].message.text(), "one or 2");
  EXPECT_EQ(lines[2].message.text(), "three or 4");
  EXPECT_EQ(lines[3].message.text(), "5 of six");
}

TEST_F(LogTest, ReadsOfATextWithAPrecisionNoMoreThanThat) {
  const std::array<char, 3> endless{'a', 'b', 'c'};
  CKELDebug::PrintLog(2, 0, "%.3s|%.*s|%.s|%.0s", endless.data(), 2, endless.data(), endless.data(), endless.data());
  CKELDebug::PrintLog(2, 0, "%.*s|%*.*s", -1, "whole", 4, 1, endless.data());
  EXPECT_EQ(lines[0].message.text(), "abc|ab||");
  EXPECT_EQ(lines[1].message.text(), "whole|   a");
}

TEST_F(LogTest, RendersEachConversionAsPrintfDoes) {
  CKELDebug::PrintLog(2, 0, "%d|%5d|%-5d|%05d|%+d|%i|%u|%x|%X|%o|%c|%%", -7, 42, 42, 42, 42, 3, 4000000000U, 255, 255,
                      8, 'z');
  CKELDebug::PrintLog(2, 0, "%ld|%lu|%lld|%llu|%zu|%hd|%hhu", -8L, 8UL, -9LL, 18446744073709551615ULL, std::size_t{7},
                      short{4464}, static_cast<unsigned char>(44));
  CKELDebug::PrintLog(2, 0, "%s|%.2s|%5s|%-5s|%*d|%.*s", "text", "text", "t", "t", 4, 1, 3, "abcdef");
  CKELDebug::PrintLog(2, 0, "%.2f|%g|%e", 1.5, 0.25, 1000.0);
  ASSERT_EQ(lines.size(), 4U);
  EXPECT_EQ(lines[0].message.text(), "-7|   42|42   |00042|+42|3|4000000000|ff|FF|10|z|%");
  EXPECT_EQ(lines[1].message.text(), "-8|8|-9|18446744073709551615|7|4464|44");
  EXPECT_EQ(lines[2].message.text(), "text|te|    t|t    |   1|abc");
  EXPECT_EQ(lines[3].message.text(), "1.50|0.25|1.000000e+03");
}

TEST_F(LogTest, ANullTextIsWrittenAsSuch) {
  const char* none = nullptr;
  CKELDebug::PrintLog(2, 0, "[%s]", none);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message.text(), "[(null)]");
}

TEST_F(LogTest, MasksAddresses) {
  CKELDebug::PrintLog(2, 0, "[CEmpTaskWindow::Create][%p] begin.", static_cast<void*>(this));
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message.masked(), "[CEmpTaskWindow::Create][*] begin.");
  EXPECT_NE(lines[0].message.text(), lines[0].message.masked());
}

TEST_F(LogTest, MasksLineNumbersButNotOtherNumbers) {
  CKELDebug::PrintLog(2, 0, "FILE=[%s] FUNCTION=[%s] LINE=[%d]", "Window/Src/X", "Create", 77);
  CKELDebug::PrintLog(2, 0, banner, "Window/Src/X", "Create", 77);
  CKELDebug::PrintLog(2, 0, "[%s][%s][%d] size=[%d]", "a", "b", 77, 5);
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[0].message.masked(), "FILE=[Window/Src/X] FUNCTION=[Create] LINE=[*]");
  EXPECT_EQ(lines[1].message.masked(), "\033[2;31;42m !!!!ERROR!!!![Window/Src/X][Create][*] \033[0m");
  EXPECT_EQ(lines[1].message.text(), "\033[2;31;42m !!!!ERROR!!!![Window/Src/X][Create][77] \033[0m");
  EXPECT_EQ(lines[2].message.masked(), "[a][b][77] size=[5]");
}

TEST_F(LogTest, MasksThreadIdsAndPointerValuedNumbers) {
  CKELDebug::PrintLog(2, 0, "[%s],pid = %lu", "x", static_cast<unsigned long>(pthread_self()));
  CKELDebug::PrintLog(2, 3, "GetSignalStrength sigStrength is %d", 12345);
  ASSERT_EQ(lines.size(), 2U);
  EXPECT_EQ(lines[0].message.masked(), "[x],pid = *");
  EXPECT_EQ(lines[1].message.masked(), "GetSignalStrength sigStrength is *");
}

TEST_F(LogTest, PidsOfTracksAreNotMasked) {
  CKELDebug::PrintLog(2, 3, "audio.pid = %d,pid = %d!", 256, 257);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message.masked(), "audio.pid = 256,pid = 257!");
}

TEST_F(LogTest, ArgumentsThatLookLikeAMarkMaskNothing) {
  CKELDebug::PrintLog(2, 0, "%s%d", "LINE=[", 5);
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message.masked(), "LINE=[5");
}

TEST_F(LogTest, KeepsLineBreaksOfTheMessage) {
  CKELDebug::PrintLog(2, 0, "ExecuteWithParamList[%s]\n", "a\nb");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines[0].message.text(), "ExecuteWithParamList[a\nb]\n");
}

TEST_F(LogTest, AMessageThatThereIsNoMemoryForIsLost) {
  bool full = true;
  const notify::Subscription hears = listenToLog(3, [&](const LogLine&) {
    if (full) throw std::bad_alloc();
  });
  EXPECT_NO_THROW(CKELDebug::PrintLog(2, 0, "one"));
  full = false;
  CKELDebug::PrintLog(2, 0, "two");
  EXPECT_EQ(lines.back().message.text(), "two");
}

}  // namespace
}  // namespace virtualtv::framework
