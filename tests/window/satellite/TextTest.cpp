// SPDX-License-Identifier: MIT
// Any text as a description: the answer is 0, or that of the description in the text, and nothing else happens.
#include <random>

#include "Satellite.h"

namespace satellite {

namespace {

constexpr std::size_t deep = 100000;
constexpr std::size_t large = 10 * 1024 * 1024;

std::string repeated(std::size_t count, const std::string& text) {
  std::string all;
  all.reserve(count * text.size());
  for (std::size_t at = 0; at < count; ++at) all += text;
  return all;
}

// Texts that are not parsed at all.

TEST_F(SatelliteTest, ATextThatDoesNotBeginWithABraceIsNotEvenParsed) {
  for (const std::string& text :
       {std::string(), std::string(" {}"), " " + description(), "\n" + description(), std::string("[]"),
        std::string("[{}]"), std::string("null"), std::string("1"), std::string("\"{}\""), std::string("}"),
        "\xef\xbb\xbf" + description(), "/**/" + description(), std::string("\xff"), std::string("%s%n")}) {
    SCOPED_TRACE(text);
    expectRefused(text, {});
    EXPECT_EQ(logs(), Lines{given(text)});
  }
}

TEST_F(SatelliteTest, ATextThatIsNoJsonIsRefused) {
  for (const char* text : {"{",
                           "{]",
                           "{\"",
                           "{\"TYPE\"",
                           "{\"TYPE\":",
                           "{\"TYPE\":}",
                           "{\"TYPE\" 1}",
                           "{TYPE:1}",
                           "{'TYPE':1}",
                           "{\"TYPE\":1,,}",
                           "{\"TYPE\":01x}",
                           "{\"TYPE\":1",
                           "{\"TYPE\":[1}",
                           "{\"TYPE\":\"\\ud800\"}",
                           "{\"TYPE\":\"\\u12\"}",
                           "{\"TYPE\":\"\\q\"}",
                           "{/* }",
                           "{\xff}",
                           "{\"\xff",
                           "{{}}",
                           "{nul"}) {
    SCOPED_TRACE(text);
    expectRefused(text, {});
    EXPECT_EQ(logs(), (Lines{given(text), notParsed}));
  }
}

TEST_F(SatelliteTest, ATypeOtherThanZeroIsRefusedOnceTheTextIsParsed) {
  const std::string text = description();
  for (const int type : {1, -1, 2, 2147483647, -2147483647 - 1}) {
    SCOPED_TRACE(type);
    forget();
    EXPECT_EQ(set(text, type), 0);
    EXPECT_EQ(logs(), (Lines{given(text), "3 #### DVBSIChannelDirectEx ChannelInfo Success ###",
                             "0 #### DVBSIChannelDirectEx Not match Type ###"}));
    EXPECT_EQ(set("{", type), 0);
    EXPECT_EQ(logs(), (Lines{given("{"), notParsed}));
    EXPECT_EQ(set(" {}", type), 0);
    EXPECT_EQ(logs(), Lines{given(" {}")});
    EXPECT_EQ(calls(), Lines());
  }
}

// Values of other types.

const std::string exception = "0 Exception Handled by SetDVBSIChannelDirectEx ";

/// Values that are not numbers of 32 bits.
const Lines noNumbers{"\"9\"",
                      "\"\"",
                      "[]",
                      "[9]",
                      "{}",
                      "{\"a\":9}",
                      "2147483648",
                      "-2147483649",
                      "4294967305",
                      "18446744073709551616",
                      "1e300",
                      "-1e300",
                      "99999999999999999999999999999999"};

/// The lines without the JSON library's text about an exception.
Lines withoutReason(Lines lines) {
  if (!lines.empty() && lines.back().rfind(exception, 0) == 0) lines.back() = exception;
  return lines;
}

TEST_F(SatelliteTest, AMemberThatIsNoNumberIsRefusedBeforeTheTransponderIsLookedUp) {
  for (const std::string member : {"TYPE", "ModulationType", "SymbolRate", "ProgramNumber", "PTC", "ProgNum",
                                   "MINOR_NUMBER_ONE_PART", "Frequency", "Polarization"}) {
    const bool ofTransponder = member == "Frequency" || member == "Polarization";
    for (const std::string& value : noNumbers) {
      SCOPED_TRACE(member + " " + value);
      const std::string text = description({{member, value}});
      expectRefused(text, ofTransponder ? Lines{createManager} : Lines());
      EXPECT_EQ(withoutReason(logs()), join({understood(text), {exception}}));
    }
  }
}

TEST_F(SatelliteTest, ASatelliteThatHasNoTextIsRefusedBeforeTheTransponderIsLookedUp) {
  for (const char* value : {"[]", "{}", "[\"1A\"]", "{\"1A\":1}"}) {
    SCOPED_TRACE(value);
    expectRefused(description({{"SatelliteId", value}}), {createManager});
  }
}

TEST_F(SatelliteTest, ANumberMayBeWrittenInOtherWays) {
  for (const char* nine : {"9.0", "9.9", "9e0", "90e-1", "0.9e1"}) {
    restart();
    EXPECT_EQ(set(description({{"TYPE", nine}})), 1) << nine;
  }
  const std::map<std::string, std::string> others{{"true", "1"}, {"false", "0"}, {"null", "0"}, {"-0", "0"}};
  for (const auto& [value, number] : others) {
    forget();
    set(description({{"TYPE", value}}));
    const std::string call = calls()[2];
    EXPECT_NE(call.find("(fetch 12, where 1=" + number + ", "), std::string::npos) << call;
  }
}

TEST_F(SatelliteTest, OtherMembersAndCommentsDoNotCount) {
  EXPECT_EQ(set(description({{"type", "1"}, {"", "2"}, {"TYPE ", "[]"}, {"unknown", "{\"TYPE\":8}"}})), 1);
  restart();
  EXPECT_EQ(set(description({{"unknown", repeated(900, "[") + repeated(900, "]")}})), 1);
  restart();
  EXPECT_EQ(set("{/* one */ // two\n" + description().substr(1)), 1);
}

TEST_F(SatelliteTest, WhatFollowsTheObjectIsNotRead) {
  for (const char* rest : {" ", "\n", "}", " garbage", "{}", "\xff"}) {
    restart();
    EXPECT_EQ(set(description() + rest), 1) << rest;
  }
  restart();
  EXPECT_EQ(set(description() + std::string(1, '\0') + "rest"), 1);
}

TEST_F(SatelliteTest, TextsThatAreNoUtf8AreTakenAsTheyAre) {
  for (const char* bytes : {"\xff", "\xc3", "\xc0\x80", "\xed\xa0\x80", "\xf5\x80\x80\x80", "\x80\xbf"}) {
    SCOPED_TRACE(bytes);
    restart();
    EXPECT_EQ(set(description({{bytes, "\"" + std::string(bytes) + "\""}})), 1);
    restart();
    EXPECT_EQ(set(description({{"SatelliteId", "\"" + std::string(bytes) + "1A\""}})), 1);
    EXPECT_EQ(calls()[1], lookUp("65535,0,11727000,27000,1,-1") + " -> 1");
  }
}

// Deep and large texts.

TEST_F(SatelliteTest, BracketsNestedTooDeepAreRefused) {
  const std::string brackets = repeated(deep, "[");
  const std::string braces = repeated(deep, "{\"a\":");
  for (const std::string& text : {"{\"a\":" + brackets, "{\"a\":" + brackets + repeated(deep, "]") + "}", braces,
                                  braces + "1" + repeated(deep, "}"), "{\"a\":" + repeated(deep, "[{\"a\":")}) {
    expectRefused(text, {});
    EXPECT_EQ(withoutReason(logs()), (Lines{given(text), exception}));
  }
  expectRefused(repeated(deep, "{"), {});  // not JSON
}

TEST_F(SatelliteTest, ALargeTextIsReadLikeASmallOne) {
  const std::string text(large, 'x');
  restart();
  EXPECT_EQ(set(description({{"unknown", "\"" + text + "\""}})), 1);
  restart();
  EXPECT_EQ(set("{" + std::string(large, ' ') + description().substr(1)), 1);
  restart();
  EXPECT_EQ(set(description({{"SatelliteId", "\"" + text + "\""}})), 1);
  expectRefused("{\"unknown\":\"" + text, {});
  expectRefused("{\"TYPE\":" + std::string(large, '9') + "}", {});
  expectRefused("{" + std::string(large, '\xff'), {});
  expectRefused(text, {});
}

TEST_F(SatelliteTest, ADescriptionThatIsDamagedAnywhereAnswersZeroOrOne) {
  const std::string whole = description();
  std::mt19937 random(20250114);  // a fixed seed, so that failures are reproducible
  const std::string alphabet = std::string("{}[]\",:/*\\u0159eE+-. \n\xff\xc3") + '\0';
  for (int round = 0; round < 3000; ++round) {
    std::string text = whole;
    for (unsigned left = random() % 4 + 1; left > 0; --left) {
      text[1 + random() % (text.size() - 1)] = alphabet[random() % alphabet.size()];
    }
    restart();
    const int result = set(text);
    ASSERT_EQ(result, onScreen() == 900U ? 1 : 0) << "round " << round << ": " << text;
  }
}

TEST_F(SatelliteTest, ADescriptionThatIsCutAnywhereIsRefused) {
  const std::string whole = description();
  for (std::size_t length = 0; length < whole.size(); ++length) expectRefused(whole.substr(0, length), {});
}

}  // namespace

}  // namespace satellite
