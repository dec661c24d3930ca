// SPDX-License-Identifier: MIT
// How each command reads its parameters.
#include <algorithm>

#include "support/Channels.h"
#include "support/LogLines.h"

namespace {

using support::commandLogs;
using support::Lines;

constexpr const char* previousMainKey = "db/emp/previousmainsource";

class ParseTest : public channels::ChannelEngineTest {
 protected:
  void SetUp() override {
    ChannelEngineTest::SetUp();
    ASSERT_EQ(execute("FindChannel", {"0", "1"}), "int 1");
    forget();
  }

  bool logged(const std::string& line) {
    const Lines lines = logs();
    return std::find(lines.begin(), lines.end(), line) != lines.end();
  }
};

// Decimal digits at the front: garbage reads as 0, and numbers beyond the range are clamped.

TEST_F(ParseTest, ADecimalParameterIsTheDigitsAtItsFrontAndZeroWithoutAny) {
  const std::map<std::string, Lines> majors{
      {"7", {"0", "-0", "", " ", "abc", "x1", "-", "+", "--1", "0x1", ".5", "\xff", "%d"}},
      {"8", {"1", "+1", " 1", "\t\n1", "01", "1abc", "1.9", "1 2", "1e1"}},
      {"9", {"2"}}};
  for (const auto& [major, texts] : majors) {
    for (const std::string& text : texts) {
      EXPECT_EQ(execute("GetChannel_Major", {text}), "int " + major) << '\'' << text << '\'';
    }
  }
}

/// Numbers beyond the range of `int` whose low bits alone would be small numbers.
const Lines tooLarge{"2147483648",          "4294967296",           "4294967297",           "18446744073709551617",
                     "9223372036854775807", "99999999999999999999", "123456789012345678901"};
const Lines tooSmall{"-2147483649",          "-4294967295",           "-4294967296",
                     "-9223372036854775808", "-18446744073709551615", "-99999999999999999999"};

TEST_F(ParseTest, ADecimalParameterBeyondTheRangeIsClamped) {
  for (const std::string& text : support::join({tooLarge, tooSmall})) {
    for (const char* command : {"GetChannel_Major", "GetChannel_Minor", "GetChannel_Name", "GetChannel_OriginNetID",
                                "GetChannel_ProgramNumber", "GetChannel_PTC", "GetChannel_ServiceName",
                                "GetChannel_TransportStreamID", "GetChannel_Type", "GetChannel_OnTVJson"}) {
      EXPECT_EQ(execute(command, {text}), "int -1") << command << ' ' << text;
    }
  }
  for (const std::string& text : tooLarge) {
    execute("GetChannel_Minor", {text});
    EXPECT_TRUE(logged("3 [CEmpTaskWindow::GetChannel_Minor][Idx:2147483647] call begin.")) << text;
  }
  for (const std::string& text : tooSmall) {
    execute("GetChannel_Minor", {text});
    EXPECT_TRUE(logged("3 [CEmpTaskWindow::GetChannel_Minor][Idx:-2147483648] call begin.")) << text;
  }
}

TEST_F(ParseTest, SetWindowReadsEveryNumberButZeroAsPictureInPicture) {
  const std::map<std::string, Lines> windows{
      {"0 PL_WINDOW_WINDOW_MAIN", {"0", "", "abc", "-0", "0x1"}},
      {"0 PL_WINDOW_WINDOW_PIP", support::join({{"1", "2", "-1", "1x"}, tooLarge, tooSmall})}};
  for (const auto& [line, texts] : windows) {
    for (const std::string& text : texts) {
      EXPECT_EQ(execute("SetWindow", {text}), "int 1");
      EXPECT_TRUE(logged(line)) << text;
    }
  }
}

TEST_F(ParseTest, FindChannelClampsBothParameters) {
  fault("TCNavigationModeHelper::GetNavigationCriteria always result=1");
  execute("FindChannel", {"4294967298", "4294967297"});
  const Lines asked = calls();
  EXPECT_NE(asked[0].find("mode=-1,-1, "), std::string::npos) << "a mode beyond the range has no meaning: " << asked[0];
  EXPECT_TRUE(std::any_of(asked.begin(), asked.end(), [](const std::string& call) {
    return call.find("where 1=0") != std::string::npos;
  })) << "nor has a type";
  EXPECT_TRUE(logged("3 nTCTVMode.antennaMode = -1, nTCTVMode.serviceMode = -1 !"));
}

// Whole numbers: any other text does not parse.

const Lines noNumbers{"",     " ",           "abc", "6x",  " 6",         "6 ",          "0x6",
                      "6.0",  "+",           "-",   "--6", "2147483648", "6\n",         "6,",
                      "\xff", "-2147483649", "1e1", "6 6", "+-6",        "99999999999", "4294967302"};

TEST_F(ParseTest, GetSourceReadsTheStoredSourceForThePreviousSeeks) {
  setSetting(previousMainKey, 99);
  for (const char* seek : {"6", "8", "9", "+6", "06"}) EXPECT_EQ(execute("GetSource", {seek}), "int 99") << seek;
}

TEST_F(ParseTest, GetSourceTakesASeekThatDoesNotParseForTheCurrentSource) {
  setSetting(previousMainKey, 99);
  for (const std::string& seek : support::join({{"0", "2", "-1", "7", "101"}, noNumbers})) {
    EXPECT_EQ(execute("GetSource", {seek}), "int 0") << '\'' << seek << '\'';
  }
}

TEST_F(ParseTest, SetTvModeWithoutANumberAnswersMinusOneWithoutACall) {
  for (const std::string& mode : noNumbers) {
    forget();
    EXPECT_EQ(execute("SetTVMode", {mode}), "int -1") << '\'' << mode << '\'';
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs("SetTVMode", {mode}, {}, -1));
  }
}

TEST_F(ParseTest, SetTvModePassesItsNumberOn) {
  for (const auto& [text, mode] : std::vector<std::pair<std::string, std::string>>{
           {"5", "2,3"}, {"+23", "0,21"}, {"024", "1,21"}, {"-1", "-1,-1"}, {"2147483647", "-1,-1"}}) {
    forget();
    execute("SetTVMode", {text});
    const Lines asked = calls();
    ASSERT_FALSE(asked.empty());
    EXPECT_NE(asked.back().find("SetTVMode(mode=" + mode + ", "), std::string::npos) << asked.back();
  }
}

// The service id: by position, or by major, minor and type.

TEST_F(ParseTest, GetChannelServiceIdWithoutSecondAndThirdParameterTakesAPosition) {
  EXPECT_EQ(execute("GetChannel_ServiceId", {"0"}), "ascii 281");
  EXPECT_EQ(execute("GetChannel_ServiceId", {"2"}), "ascii 283");
  EXPECT_EQ(execute("GetChannel_ServiceId", {"+1"}), "ascii 282");
  EXPECT_EQ(execute("GetChannel_ServiceId", {"3"}), "int -1");
  EXPECT_EQ(execute("GetChannel_ServiceId", {"1", "", "", "5"}), "ascii 282") << "the fourth parameter does not count";
}

TEST_F(ParseTest, GetChannelServiceIdReadsMajorThenMinorThenType) {
  fault("IService::FindService result=1 out.service={12=5}");
  forget();
  EXPECT_EQ(execute("GetChannel_ServiceId", {"11", "12", "3"}), "ascii 5");
  const Lines asked = calls();
  ASSERT_EQ(asked.size(), 1U);
  EXPECT_NE(asked[0].find("where 13=11, where 14=12, where 1=2"), std::string::npos) << asked[0];
}

TEST_F(ParseTest, GetChannelServiceIdThatDoesNotParseAnswersTheEmptyTextWithResultOne) {
  Lines bad = noNumbers;
  bad.erase(bad.begin());  // an empty second or third parameter chooses the form
  std::vector<Lines> lists{{}, {""}, {"", "1"}, {"", "", "1"}, {"", "1", "1"}, {"1", "1"}, {"1", "", "1"}};
  for (const std::string& text : bad) {
    lists.push_back({text});
    lists.push_back({text, "1", "1"});
    lists.push_back({"1", text, "1"});
    lists.push_back({"1", "1", text});
    lists.push_back({"1", text});
    lists.push_back({"1", "", text});
  }
  for (const Lines& parameters : lists) {
    forget();
    EXPECT_EQ(execute("GetChannel_ServiceId", parameters), "ascii") << ::testing::PrintToString(parameters);
    EXPECT_EQ(calls(), Lines());
    EXPECT_EQ(logs(), commandLogs("GetChannel_ServiceId", parameters, {}, 1));
  }
}

}  // namespace
